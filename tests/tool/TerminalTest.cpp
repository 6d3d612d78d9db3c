// Runs of the tool at a terminal, where everything that can have a name has one that would drive it.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <nlohmann/json.hpp>
#include <thread>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/PseudoTerminal.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"

using nlohmann::ordered_json;

namespace {

using Words = std::vector<std::string>;

std::string encoded(unsigned codePoint)
{
    return {static_cast<char>(0xC0 | codePoint >> 6), static_cast<char>(0x80 | (codePoint & 0x3F))};
}

// All control characters that a text of JSON may hold, sequences that terminals heed, and characters that change the
// direction of what is shown.
const std::string controls = [] {
    std::string text = "<";
    for (char character = 1; character < ' '; ++character) {
        text += character;
    }
    text += '\x7F';
    for (unsigned codePoint = 0x80; codePoint < 0xA0; ++codePoint) {
        text += encoded(codePoint);
    }
    return text + "\x1b[2J\x1b]0;title\x07\x1bP1$r\x1b\\\x1b[?1049h\xe2\x80\xae\xe2\x81\xa6\xe2\x80\x8f>";
}();

// What a file or a word of the command line may be called besides: bytes that are no UTF-8, some of which are control
// characters to who does not look closely. A path's component is shorter than 256 bytes.
const std::string brokenBytes = "\x9b[31m \xc0\x9b \xe0\x82\x9b \xf0\x80\x82\x9b \xe2\x82 \xed\xb2\x9b \xff\x9d\xc2";

const std::string pathName = [] {
    std::string name = controls.substr(0, 32) + brokenBytes + "\x1b]0;t\x07" + encoded(0x9B);
    return name;
}();

bool isContinuation(const std::string& text, std::size_t at)
{
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

// The length of the character at `at`; 0: none begins there.
std::size_t characterAt(const std::string& text, std::size_t at)
{
    const auto first = static_cast<unsigned char>(text[at]);
    const std::size_t length = first < 0x80                    ? 1
                               : first >= 0xC2 && first < 0xE0 ? 2
                               : (first & 0xF0) == 0xE0        ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text, at + i)) {
            return 0;
        }
    }
    const auto second = static_cast<unsigned char>(length > 1 ? text[at + 1] : '\0');
    const bool isNone = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                        (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
    return isNone ? 0 : length;
}

// The numbers of what may drive a terminal in `text`: control characters but line ends, carriage returns and tabs, and
// the bytes 0x80 to 0x9F that belong to no character.
std::string drivingBytes(const std::string& text)
{
    std::string found;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = characterAt(text, at);
        const auto byte = static_cast<unsigned char>(text[at]);
        const bool isLong = length == 2 && byte == 0xC2 && static_cast<unsigned char>(text[at + 1]) < 0xA0;
        const bool isSingle = byte == 0x7F || (byte < 0x20 && byte != '\n' && byte != '\r' && byte != '\t');
        const bool isLost = length == 0 && byte >= 0x80 && byte < 0xA0;
        if (isLong || isSingle || isLost) {
            found += std::to_string(isLong ? static_cast<unsigned char>(text[at + 1]) : byte) + ' ';
        }
        at += length == 0 ? 1 : length;
    }
    return found;
}

ordered_json namedEntry(const std::string& name, ordered_json more)
{
    ordered_json entry = fileEntry(name, std::move(more));
    entry[controls] = controls;
    entry["boardVariant"] = controls;
    return entry;
}

ordered_json namedDescription()
{
    ordered_json whole = description(
        {namedEntry("a.bin", {{"boardType", controls}, {"version", "2.0"}, {"checksumCrc32", 3904355907}}),
         namedEntry("a.bin", {{"boardType", controls}, {"id", 2}}),
         namedEntry("a" + controls, {{"boardType", {controls, "B"}}, {"id", 3}}),
         namedEntry("b", {{"boardType", controls}, {"targetPath", controls}}),
         namedEntry("../" + controls, {{"boardType", controls}, {"targetPath", "../" + controls}}),
         {{"name", controls},
          {"sequence", 2},
          {"checksumCrc32", 3},
          {"boards", {{{"boardType", controls}, {"id", 4}}, {{"boardType", controls}, {"id", 5}, {controls, 1}}}}}});
    for (const char* const member : {"archiveName", "productName", "archiveVariant", "x\x1b"}) {
        whole["info"][member] = controls;
    }
    whole[controls] = controls;
    return whole;
}

ordered_json namedTarget()
{
    const ordered_json errors = {{{"code", 7}, {"text", controls}, {"function", controls}, {"timeStamp", 1}}};
    ordered_json device = target(
        {board("HCN",
               {{"PRODUCT/BOARD_TYPE", controls},
                {"PRODUCT/VARIANT", controls},
                {"PRODUCT/NAME", controls},
                {"PRODUCT/SERIAL_NUMBER", 815}},
               {updateElement(1, {{"NAME", controls}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 1}}),
                updateElement(2, {{"NAME", "Fpga" + controls}, {"VERSION", controls}}),
                fileElement(3, {{"NAME", controls}, {"LOCATION", controls}})}),
         item("IOROUTER", {},
              {item("BACKPLANE", {{"PRODUCT/UNITNAME", controls}, {"UNITNAME", controls}, {"RACKNAME", controls}}),
               board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "B"}, {"PRODUCT/VARIANT", controls}},
                     {updateElement(3, {{"NAME", controls}})})})});
    device["script"] = {
        {"values", {{"/ROOT/HCN:PRODUCT/ID", errors}}},
        {"unlock", {{{"errors", errors}}}},
        {"elements",
         {{"/ROOT/HCN#1",
           {{"polls", {{{"status", 2}, {"errors", errors}}, {{"status", 2}}}}, {"finish", {{{"results", errors}}}}}}}}};
    return device;
}

const std::vector<Words> commandLines = {{"list", "A"},
                                         {"archive-version", "A"},
                                         {"describe", "A"},
                                         {"compare", "A", "--verbose"},
                                         {"installed", "--verbose"},
                                         {"scan", "--verbose"},
                                         {"reboot-support"},
                                         {"check", "A"},
                                         {"explain", "A"},
                                         {"explain", "A", "--file", "0", "--file", "5"},
                                         {"update", "A", "--dry-run"},
                                         {"update", "A", "--dry-run", "--no-check"},
                                         {"update", "A"},
                                         {"update", "A", "--no-check", "--verbose", "--verify", "--events", "events"},
                                         {"update", "A", "--no-check", "--progress", "auto", "--board-types", "N"},
                                         {"installed", "--element-names", "N", "--serial-numbers", "N"},
                                         {"record"},
                                         {"new", "fresh"},
                                         {"coverage", "A", "T", "N"},
                                         {"history", "E"},
                                         {"inspect", "A/a.bin", "N"},
                                         {"update", "A", "--plan", "N"},
                                         {"update", "A", "--plan", "E"},
                                         {"update", "A", "--events", "N/N"},
                                         {"describe", "A", "--output", "N/N"},
                                         {"record", "--output", "N/N"},
                                         {"coverage", "A", "T", "--html", "N/N"},
                                         {"new", "N"},
                                         {"list", "N"},
                                         {"list", "A", "--description", "N"},
                                         {"scan", "--target", "N"},
                                         {"scan", "--trace", "N/N"},
                                         {"history", "N"},
                                         {"help", "N"},
                                         {"version", "--trace", "N/N"},
                                         {"complete", "--", "installed", "--element-names", ""},
                                         {"N"},
                                         {"scan", "N"},
                                         {"scan", "--N"},
                                         {"scan", "-N"},
                                         {"scan", "--N=N"},
                                         {"scan", "--verbose=N"},
                                         {"compare", "A", "--exclude", "N"},
                                         {"explain", "A", "--element", "N"},
                                         {"update", "A", "--progress", "N"},
                                         {"update", "A", "--stall-timeout", "N"}};

class AtATerminal : public testing::Test {
protected:
    AtATerminal() : archive(folder.path() / pathName)
    {
        folder.write(pathName + "/archive.json", namedDescription().dump());
        folder.write(pathName + "/a.bin", "content");
        folder.write(pathName + "/" + pathName, "listed in no entry");
        folder.write(pathName + "/b", "");
        folder.write("named/" + pathName + ".json", namedTarget().dump());
        const ordered_json element = {{"index", 0}, {"name", controls}, {"from", controls}, {"to", controls}};
        const ordered_json event = {{"time", controls},
                                    {"run", controls},
                                    {"event", "start"},
                                    {"archive", {{"path", controls}, {"version", controls}}},
                                    {"elements", ordered_json::array({element})}};
        folder.write("events of " + pathName, event.dump() + "\n{" + controls);
    }

    std::string target() const { return "named/" + pathName + ".json"; }

    // The words with what the letters in them stand for.
    Words meaning(Words words, const std::string& name) const
    {
        for (std::string& word : words) {
            std::string meant;
            for (const char letter : word) {
                meant += letter == 'A'   ? archive.string()
                         : letter == 'T' ? target()
                         : letter == 'E' ? "events of " + pathName
                         : letter == 'N' ? name
                                         : std::string(1, letter);
            }
            word = meant;
        }
        return words;
    }

    // What the tool shows at a terminal that is both its outputs, or its standard error alone; what it prints elsewhere
    // goes to `output`.
    std::string shown(const Words& words, std::string* output = nullptr, const std::string& trace = "") const
    {
        const PseudoTerminal terminal;
        const std::string place = terminal.path();
        Words line = {"-c", "exec \"$@\" 2>" + place + (output == nullptr ? " >" + place : ""), "sh", TRELLAN_TOOL};
        line.insert(line.end(), words.begin(), words.end());
        RunningProcess process("/bin/sh", line, folder.path(),
                               {"TRELLAN_TARGET=" + target(), "TRELLAN_TRACE=" + trace});
        std::string text;
        std::atomic<bool> hasEnded = false;
        std::thread user([&] {
            while (!hasEnded) {
                text += terminal.shown();
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
        const ProcessResult result = process.wait();
        hasEnded = true;
        user.join();
        EXPECT_GE(result.status, 0) << "ended by a signal";
        if (output != nullptr) {
            *output = result.output;
        }
        return text + terminal.shown();
    }

    const TempDir folder;
    const std::filesystem::path archive;
};

}  // namespace

TEST(DrivingBytes, AreFoundByTheJudge)
{
    EXPECT_EQ(drivingBytes("a\tb\r\n \xc2\xa0 \xc3\x9b \xe2\x80\x9b \xf0\x9f\x98\x80 \xff \xc0 \xe2\x80\xae"), "");
    EXPECT_EQ(drivingBytes("\x1b[ \x7f \x9b \xc2\x9b \xe0\x82\x9b \xe2\x82"), "27 127 155 155 130 155 130 ");
    EXPECT_EQ(drivingBytes(controls).substr(0, 12), "1 2 3 4 5 6 ");
}

// A test for each name: some hundred runs take long under the sanitizers.
class HostileNames : public AtATerminal, public testing::WithParamInterface<std::string> {};

TEST_P(HostileNames, DriveNoTerminal)
{
    std::size_t escaped = 0;
    for (const Words& words : commandLines) {
        SCOPED_TRACE(ordered_json(words).dump());
        const std::string text = shown(meaning(words, GetParam()));
        EXPECT_EQ(drivingBytes(text), "");
        escaped += text.find("\\x1b") != std::string::npos || text.find("\\x9b") != std::string::npos;
    }
    EXPECT_GT(escaped, commandLines.size() * 3 / 4);
}

INSTANTIATE_TEST_SUITE_P(Three, HostileNames, testing::Values(pathName, "n" + brokenBytes, "\x1b[2J\x07"),
                         [](const auto& tested) { return "Name" + std::to_string(tested.index); });

TEST_F(AtATerminal, ErrorsOfTheTargetDoNotDriveIt)
{
    const std::string text = shown(meaning({"update", "A", "--no-check", "--verbose"}, ""));
    EXPECT_NE(text.find("ERROR 0x7 (reported by Host PC), time  0.001 sec., in <\\x01\\x02"), std::string::npos)
        << text;
    EXPECT_NE(text.find("Update failed"), std::string::npos) << text;
    EXPECT_EQ(drivingBytes(text), "");
}

TEST_F(AtATerminal, ATraceThatIsNamedBeforeTheToolBeginsDoesNotDriveIt)
{
    EXPECT_EQ(shown({"version"}, nullptr, "/\x1b[2J\x9b\xc2\x9b\x7f\xc3\xbc\x9b/trace"),
              "WARNING: cannot write the trace /\\x1b[2J\\x9b\\xc2\\x9b\\x7f\xc3\xbc\\x9b/trace: No such file or "
              "directory\n1.0\n");
    EXPECT_EQ(drivingBytes(shown({"version"}, nullptr, "/" + brokenBytes + "/trace")), "");
}

TEST_F(AtATerminal, DocumentsAreJsonWhateverIsNamed)
{
    unsigned documents = 0;
    for (Words words : commandLines) {
        if (words.front() == "complete") {
            continue;  // which would take it for a word
        }
        words.push_back("--json");
        SCOPED_TRACE(ordered_json(words).dump());
        std::string output;
        EXPECT_EQ(drivingBytes(shown(meaning(words, pathName), &output)), "");
        if (!output.empty()) {
            EXPECT_TRUE(ordered_json::accept(output)) << output;
            ++documents;
        }
    }
    EXPECT_GT(documents, commandLines.size() / 2);
}
