// The check of an archive held against the library's reader, over descriptions that are mutated at random.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>

#include "ZoITrellanInspector.h"
#include "support/MessageCapture.h"
#include "support/TempDir.h"
#include "support/UpdateFiles.h"
#include "support/UpdaterOptions.h"
#include "tool/documents/ArchiveFindings.h"

using nlohmann::ordered_json;
using TrellanTool::Finding;
using ZoNTrellanInspector::ZoTSeverity;

namespace {

// Descriptions that are sound, or wrong in one thing or several.
class Mutations {
public:
    explicit Mutations(unsigned seed) : random(seed) {}

    std::string next()
    {
        ordered_json document = {{"info", info()}, {"files", ordered_json::array()}};
        for (unsigned count = below(4); count > 0; --count) {
            document["files"].push_back(entry());
        }
        for (unsigned count = below(3); count > 0; --count) {
            mutate(document);
        }
        std::string text = document.dump(static_cast<int>(below(3)) - 1);
        if (below(4) == 0) {
            spoil(text);
        }
        return text;
    }

private:
    ordered_json info()
    {
        return {{"formatVersion", "1.0"}, {"archiveVersion", "2.0"}, {"productName", "P"}, {"archiveName", "N"}};
    }

    ordered_json entry()
    {
        ordered_json result = {{"name", pick({"plain.bin", "header.bin"})}, {"sequence", below(5)}};
        const bool toDrive = below(3) == 0;
        const char* const target = toDrive ? "targetPath" : "id";
        const ordered_json value = toDrive ? ordered_json("a") : ordered_json(below(3));
        if (below(2) == 0) {
            result["boardType"] = pick({"A", {"A", "B"}});
            result[target] = value;
        } else {
            result["boards"] = {{{"boardType", "A"}, {target, value}}, {{"boardType", "B"}, {target, value}}};
        }
        if (result["name"] == "plain.bin" || below(2) == 0) {
            result["checksumCrc32"] = 3421780262;
        }
        if (below(12) == 0) {
            result["name"] = pick({"absent.bin", "empty.bin", "folder", "plain.bin"});
            result.erase("checksumCrc32");
        }
        if (below(3) == 0) {
            result[pick({"boardVariant", "boardId", "hwCompatibilityId", "mode", "version", "featureLevel"})] =
                pick({0, 2, "1.0", "upgrade", nullptr});
        }
        return result;
    }

    // Replaces, removes or adds one part of the document.
    void mutate(ordered_json& document)
    {
        ordered_json* place = &document;
        while (place->is_structured() && !place->empty() && below(4) != 0) {
            place = &std::next(place->begin(), below(static_cast<unsigned>(place->size()))).value();
        }
        if (place->is_object() && below(2) == 0) {
            (*place)[pick({"id", "targetPath", "boards", "featureLevel", "name", "version", "colour"})] = anything();
        } else if (place->is_structured() && !place->empty() && below(2) == 0) {
            place->erase(std::next(place->begin(), below(static_cast<unsigned>(place->size()))));
        } else if (place != &document || below(4) == 0) {
            *place = anything();
        }
    }

    ordered_json anything()
    {
        return pick({nullptr,
                     true,
                     -1,
                     0,
                     3,
                     4294967296u,
                     18446744073709551615u,
                     1.5,
                     "",
                     "1.0",
                     "2",
                     "absent.bin",
                     "empty.bin",
                     "folder",
                     "plain.bin",
                     "header.bin",
                     ordered_json::array(),
                     ordered_json::object(),
                     ordered_json::array({nullptr, 1, "A"}),
                     ordered_json::array({ordered_json::object()})});
    }

    // Changes, takes away or puts in one byte, or cuts the text.
    void spoil(std::string& text)
    {
        const std::string bytes("\0\n\"{}[],:7-eu\\/#\xFF\xC3", 18);
        const std::size_t at = below(static_cast<unsigned>(text.size()));
        switch (below(4)) {
            case 0:
                text[at] = bytes[below(18)];
                break;
            case 1:
                text.erase(at, 1);
                break;
            case 2:
                text.insert(at, 1, bytes[below(18)]);
                break;
            default:
                text.resize(at);
        }
    }

    ordered_json pick(const std::vector<ordered_json>& values)
    {
        return values[below(static_cast<unsigned>(values.size()))];
    }

    unsigned below(unsigned end) { return static_cast<unsigned>(random() % end); }

    std::mt19937 random;
};

// What the reader prints first when it fails, in one line without its heading; empty when it succeeds.
std::string readersMessage(const ZoNTrellanUpdater::ZoTOptions& options)
{
    const std::unique_ptr<ZoITrellanUpdater> updater(ZoITrellanUpdater::createInstance(options));
    const MessageCapture messages(*updater);
    if (updater->apply() == 0) {
        return "";
    }
    const std::string text = messages.text();
    const std::size_t begin = text.find("ERROR: ") + 7;
    std::string message = text.substr(begin, text.find("\nERROR: ", begin) - begin);
    message.erase(message.find_last_not_of('\n') + 1);
    for (std::size_t end = message.find('\n'); end != std::string::npos; end = message.find('\n')) {
        message.replace(end, message.find_first_not_of("\n ", end) - end, " ");
    }
    return message;
}

bool isAboutReading(const Finding& finding)
{
    return finding.rule == "structure" || finding.rule == "syntax";
}

// Where a file cannot give its checksum because of what it is, that is said in place of it.
bool isAboutTheFile(const Finding& finding)
{
    return finding.rule == "missing-file" || finding.rule == "not-a-file" || finding.rule == "empty-file";
}

bool tells(const std::vector<Finding>& findings, const std::string& message)
{
    const bool isAboutAChecksum = message.starts_with("Cannot read checksum from update file");
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
        return finding.severity == ZoTSeverity::ERROR &&
               ((isAboutReading(finding) && finding.message.starts_with(message)) ||
                (isAboutAChecksum && isAboutTheFile(finding) && message.find(finding.name) != std::string::npos));
    });
}

}  // namespace

TEST(RandomDescriptions, AreRefusedByTheCheckWithTheReadersMessageWhereTheReaderRefusesThem)
{
    const TempDir folder;
    folder.write("plain.bin", "123456789");
    folder.write("header.bin", UpdateFiles::bitstreamFile(78));
    folder.write("empty.bin", "");
    folder.write("folder/any", "any");
    const ZoNTrellanUpdater::ZoTOptions options =
        optionsFor(ZoNTrellanUpdater::ARCHIVE_VERSION, folder.path().string());
    const std::unique_ptr<ZoITrellanUpdater> updater(ZoITrellanUpdater::createInstance(options));
    const std::unique_ptr<ZoITrellanInspector> inspector(ZoITrellanInspector::createInstance(*updater));

    Mutations mutations(20240501);
    unsigned sound = 0;
    unsigned ofStructure = 0;
    unsigned ofSyntax = 0;
    unsigned ofFiles = 0;
    for (unsigned i = 0; i < 2500; ++i) {
        const std::string description = mutations.next();
        folder.write("archive.json", description);
        const std::string message = readersMessage(options);
        const auto read = inspector->checkArchive(nullptr, nullptr);
        TrellanTool::ArchiveFindings found(*inspector, read, description);
        std::vector<Finding> findings;
        for (std::size_t position = 0; position < found.size(); ++position) {
            findings.push_back(found.at(position));
        }
        if (message.empty()) {
            ASSERT_TRUE(std::none_of(findings.begin(), findings.end(), isAboutReading)) << description;
            ++sound;
            continue;
        }
        ASSERT_TRUE(tells(findings, message)) << message << '\n' << description;
        const bool isJson = message.find("Invalid JSON data") == std::string::npos;
        ++(!isJson ? ofSyntax : message.starts_with("Cannot read checksum") ? ofFiles : ofStructure);
    }
    EXPECT_GE(sound, 500u);
    EXPECT_GE(ofStructure, 500u);
    EXPECT_GE(ofSyntax, 250u);
    EXPECT_GE(ofFiles, 50u);
}
