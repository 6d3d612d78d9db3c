// When what is printed leaves the tool, in which order, and what a terminal is shown.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <ostream>
#include <thread>

#include "json/TerminalText.h"
#include "support/PseudoTerminal.h"
#include "support/TempDir.h"
#include "support/TextFile.h"
#include "tool/OutputBuffer.h"

using TrellanJson::withControlCharactersShown;
using TrellanTool::OutputBuffer;

namespace {

// A file that is written to through a descriptor of its own.
class OpenedFile {
public:
    explicit OpenedFile(const std::filesystem::path& path)
        : path(path), number(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600))
    {
    }
    ~OpenedFile() { ::close(number); }
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;

    int descriptor() const { return number; }
    std::string content() const { return readText(path); }

private:
    const std::filesystem::path path;
    const int number;
};

class OutputBuffers : public testing::Test {
protected:
    TempDir folder;
    OpenedFile file{folder.path() / "output"};
};

}  // namespace

TEST(ControlCharacters, AreShownByteByByteInSmallLetters)
{
    EXPECT_EQ(withControlCharactersShown("\x1b[31mred\x07"), "\\x1b[31mred\\x07");
    EXPECT_EQ(withControlCharactersShown("\x01\x1f\x7f"), "\\x01\\x1f\\x7f");
    EXPECT_EQ(withControlCharactersShown(std::string_view("a\0b", 3)), "a\\x00b");
}

TEST(ControlCharacters, OfUtf8AreShownToo)
{
    EXPECT_EQ(withControlCharactersShown("\xc2\x80 \xc2\x9b \xc2\x9f"), "\\xc2\\x80 \\xc2\\x9b \\xc2\\x9f");
}

TEST(ControlCharacters, AreBytesThatBelongToNoCharacterOfUtf8)
{
    EXPECT_EQ(withControlCharactersShown("\x80\x9b\x9f\xa0"), "\\x80\\x9b\\x9f\xa0");
    EXPECT_EQ(withControlCharactersShown("\xc0\x9b \xc1\x9b \xe0\x82\x9b \xf0\x80\x82\x9b"),
              "\xc0\\x9b \xc1\\x9b \xe0\\x82\\x9b \xf0\\x80\\x82\\x9b");
    EXPECT_EQ(withControlCharactersShown("\xe2\x82 \xe2\x82"), "\xe2\\x82 \xe2\\x82");
    EXPECT_EQ(withControlCharactersShown("\xed\xa0\x9b \xf4\x90\x80\x80 \xf5\x80"),
              "\xed\xa0\\x9b \xf4\\x90\\x80\\x80 \xf5\\x80");
    EXPECT_EQ(withControlCharactersShown("\xe2\xc2\x9b \xe2\x1b"), "\xe2\\xc2\\x9b \xe2\\x1b");
}

TEST(ControlCharacters, AreNotLineEndsCarriageReturnsTabsOrTextOfAnyLanguage)
{
    const std::string text =
        "a\tb\r\n ~ \xc2\xa0 \xc2\xb5 \xc3\x9b \xdf\xbf \xe0\xa0\x80 \xe2\x82\x9b \xec\x9b\x9b \xed\x9f\x80 "
        "\xee\x80\x80 "
        "\xf0\x90\x80\x80 \xf0\x9f\x98\x80 \xf3\x9b\x9b\x9b \xf4\x8f\x9f\x9f \xa0\xff \xc2";
    EXPECT_EQ(withControlCharactersShown(text), text);
}

TEST_F(OutputBuffers, WritesWhenTheStreamIsFlushedOrEnds)
{
    {
        OutputBuffer buffer(file.descriptor());
        std::ostream stream(&buffer);
        stream << "one\n" << 'c' << "two\n";
        EXPECT_EQ(file.content(), "");
        stream.flush();
        EXPECT_EQ(file.content(), "one\nctwo\n");
        stream << "three";
    }
    EXPECT_EQ(file.content(), "one\nctwo\nthree");
}

TEST_F(OutputBuffers, WritesWhen64KilobytesAreFull)
{
    OutputBuffer buffer(file.descriptor());
    std::ostream stream(&buffer);
    stream << std::string(65535, 'a');
    EXPECT_EQ(file.content().size(), 0u);
    stream << "bc";
    EXPECT_EQ(file.content(), std::string(65535, 'a') + "b");
    stream << std::string(200000, 'd');
    EXPECT_EQ(file.content().size(), 4u * 65536);
    stream.flush();
    EXPECT_EQ(file.content(), std::string(65535, 'a') + "bc" + std::string(200000, 'd'));
}

TEST_F(OutputBuffers, KeepsTheOrderOfTwoThatWriteToOnePlace)
{
    OutputBuffer first(file.descriptor());
    OutputBuffer second(file.descriptor());
    first.keepOrderWith(second);
    second.keepOrderWith(first);
    std::ostream out(&first);
    std::ostream err(&second);
    out << "one ";
    err << "two ";
    err << "three ";
    out << "four ";
    err << 'V';
    out.flush();
    err.flush();
    EXPECT_EQ(file.content(), "one two three four V");
}

TEST_F(OutputBuffers, LeavesTheBytesAsTheyAreWhereThereIsNoTerminal)
{
    OutputBuffer buffer(file.descriptor());
    std::ostream(&buffer) << "\x1b[31m\xc2\x9b" << std::flush;
    EXPECT_EQ(file.content(), "\x1b[31m\xc2\x9b");
}

TEST_F(OutputBuffers, WaitsForTheReaderOfAPipeThatDoesNotWaitItself)
{
    int pipe[2];
    ASSERT_EQ(::pipe2(pipe, O_CLOEXEC), 0);
    ASSERT_EQ(::fcntl(pipe[1], F_SETFL, O_NONBLOCK), 0);
    const std::string text(1'000'000, 'x');  // more than a pipe holds
    std::string read;
    std::thread reader([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        char piece[4096];
        for (ssize_t length = 0; (length = ::read(pipe[0], piece, sizeof piece)) > 0;) {
            read.append(piece, static_cast<std::size_t>(length));
        }
    });
    {
        OutputBuffer buffer(pipe[1]);
        std::ostream stream(&buffer);
        stream << text << std::flush;
        EXPECT_TRUE(stream.good());
    }
    ::close(pipe[1]);
    reader.join();
    ::close(pipe[0]);
    EXPECT_TRUE(read == text) << read.size();
}

TEST_F(OutputBuffers, AFailedWriteMakesTheStreamBadForGood)
{
    const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
    OutputBuffer buffer(full);
    std::ostream stream(&buffer);
    EXPECT_TRUE(stream << "text");
    EXPECT_FALSE(stream.flush());
    stream.clear();
    EXPECT_FALSE(stream << "more");
    ::close(full);
}

TEST(OutputAtATerminal, IsWrittenAfterEachLine)
{
    const PseudoTerminal terminal;
    OutputBuffer buffer(terminal.descriptor());
    std::ostream stream(&buffer);
    stream << "begun ";
    EXPECT_EQ(terminal.shown(), "");
    stream << "line\nand";
    EXPECT_EQ(terminal.shown(), "begun line\nand");
    stream << " on" << '\n';
    EXPECT_EQ(terminal.shown(), " on\n");
}

TEST(OutputAtATerminal, ShowsControlCharactersAlsoWhenTheyComeInPieces)
{
    const PseudoTerminal terminal;
    {
        OutputBuffer buffer(terminal.descriptor());
        std::ostream stream(&buffer);
        stream << "\x1b" << std::flush << "[2J\xc2" << std::flush << "\x9b" << std::flush;
        EXPECT_EQ(terminal.shown(), "\\x1b[2J\\xc2\\x9b");
        stream << "\xc2" << std::flush << "\xb5\xc2" << std::flush;
        EXPECT_EQ(terminal.shown(), "\xc2\xb5");
    }
    EXPECT_EQ(terminal.shown(), "\xc2");
}

TEST(OutputAtATerminal, KeepsCharactersThatComeInPiecesWhole)
{
    const PseudoTerminal terminal;
    {
        OutputBuffer buffer(terminal.descriptor());
        std::ostream stream(&buffer);
        for (const char* const piece :
             {"a\xe2", "\x82", "\x9b", "\xf0\x9f", "\x98", "\x80", "\xc3", "\x9b.", "\xe2\x82"}) {
            stream << piece << std::flush;
        }
        EXPECT_EQ(terminal.shown(), "a\xe2\x82\x9b\xf0\x9f\x98\x80\xc3\x9b.");
    }
    EXPECT_EQ(terminal.shown(), "\xe2\\x82");
}
