// The file that events are appended to: whole lines, whatever was there before and whatever goes wrong.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <sstream>
#include <thread>
#include <vector>

#include "support/FileSizeLimit.h"
#include "support/Process.h"
#include "support/TempDir.h"
#include "support/TextFile.h"
#include "tool/update/EventFile.h"

using TrellanTool::EventFile;

namespace {

class EventFiles : public testing::Test {
protected:
    EventFiles() { std::signal(SIGPIPE, SIG_IGN); }
    ~EventFiles() override { std::signal(SIGPIPE, SIG_DFL); }

    std::string pathOf(const char* name) const { return (folder.path() / name).string(); }

    std::string pipe() const
    {
        EXPECT_EQ(::mkfifo(pathOf("pipe").c_str(), 0600), 0);
        return pathOf("pipe");
    }

    TempDir folder;
};

}  // namespace

TEST_F(EventFiles, IsMadeAndGetsALineForEachEvent)
{
    EventFile file(pathOf("events"));
    file.append("one", true);
    file.append("two", false);
    EXPECT_EQ(readText(pathOf("events")), "one\ntwo\n");
    EXPECT_EQ(file.takeFault(), "");
}

TEST_F(EventFiles, KeepsWhatIsThere)
{
    folder.write("events", "earlier\n");
    EventFile(pathOf("events")).append("line", false);
    EXPECT_EQ(readText(pathOf("events")), "earlier\nline\n");
}

TEST_F(EventFiles, BeginsOnALineOfItsOwnBehindATornOne)
{
    folder.write("events", "earlier\n{\"tim");
    EventFile file(pathOf("events"));
    file.append("one", false);
    file.append("two", false);
    EXPECT_EQ(readText(pathOf("events")), "earlier\n{\"tim\none\ntwo\n");
}

TEST_F(EventFiles, IsWrittenWithOthersAtTheSameTimeWithoutMixingLines)
{
    const std::string longLine(10000, 'x');
    const auto write = [&] {
        EventFile file(pathOf("events"));
        for (int i = 0; i < 200; ++i) {
            file.append(longLine, false);
        }
    };
    std::thread other(write);
    write();
    other.join();
    std::istringstream lines(readText(pathOf("events")));
    int whole = 0;
    for (std::string line; std::getline(lines, line);) {
        ASSERT_TRUE(line == longLine || line.empty()) << line.size();  // one may have begun in the middle of another's
        whole += line.empty() ? 0 : 1;
    }
    EXPECT_EQ(whole, 400);
}

TEST_F(EventFiles, NamesOnceWhyItCannotBeOpened)
{
    EventFile file(folder.path().string());
    file.append("one", true);
    EXPECT_EQ(file.takeFault(), "events cannot be written to " + folder.path().string() +
                                    ": Is a directory; the update goes on without them");
    file.append("two", true);
    EXPECT_EQ(file.takeFault(), "");
}

TEST_F(EventFiles, NamesOnceThatTheMediumIsFull)
{
    EventFile file("/dev/full");
    EXPECT_EQ(file.takeFault(), "");
    file.append("one", true);
    EXPECT_EQ(file.takeFault(),
              "events cannot be written to /dev/full: No space left on device; the update goes on without them");
    file.append("two", true);
    EXPECT_EQ(file.takeFault(), "");
}

TEST_F(EventFiles, NamesOnceThatItWasRemovedOrReplaced)
{
    EventFile removed(pathOf("removed")), replaced(pathOf("replaced"));
    folder.write("other", "");
    std::filesystem::remove(pathOf("removed"));
    std::filesystem::rename(pathOf("other"), pathOf("replaced"));
    for (auto [file, name] : {std::pair(&removed, "removed"), std::pair(&replaced, "replaced")}) {
        file->append("line", false);
        EXPECT_EQ(file->takeFault(), "events cannot be written to " + pathOf(name) +
                                         ": No such file or directory; the update goes on without them");
        file->append("line", false);
        EXPECT_EQ(file->takeFault(), "");
    }
}

TEST_F(EventFiles, GoesOnWithAWholeLineOnceAFullMediumHasRoomAgain)
{
    EventFile file(pathOf("events"));
    file.append("one", false);
    {
        const FileSizeLimit limit(7);
        file.append("lost line", false);
    }
    file.append("two", false);
    EXPECT_EQ(readText(pathOf("events")), "one\nlos\ntwo\n");
    EXPECT_EQ(file.takeFault(),
              "events cannot be written to " + pathOf("events") + ": File too large; the update goes on without them");
}

TEST_F(EventFiles, GoesOnWithAWholeLineWhereverTheMediumWasFull)
{
    const std::vector<std::string> torn = {"", "s\n", "se\n", "sec\n"};  // before "third"
    for (std::size_t room = 0; room < torn.size(); ++room) {
        std::filesystem::remove(pathOf("events"));
        EventFile file(pathOf("events"));
        file.append("one", false);
        {
            const FileSizeLimit limit(4 + room);
            file.append("sec", false);
        }
        file.append("third", false);
        EXPECT_EQ(readText(pathOf("events")), "one\n" + torn[room] + "third\n") << "room for " << room << " bytes";
    }
}

TEST_F(EventFiles, IsNotOpenInProcessesThatAreStarted)
{
    const EventFile file(pathOf("events"));
    const ProcessResult listed = runProcess("/bin/sh", {"-c", "ls -l /proc/self/fd"}, folder.path());
    EXPECT_NE(listed.output.find("/proc/"), std::string::npos) << listed.output;
    EXPECT_EQ(listed.output.find(pathOf("events")), std::string::npos) << listed.output;
}

TEST_F(EventFiles, DoesNotWaitForTheReaderOfAPipe)
{
    const std::string path = pipe();
    EventFile file(path);
    file.append("one", true);
    EXPECT_EQ(file.takeFault(),
              "events cannot be written to " + path + ": nobody reads it; the update goes on without them");
}

TEST_F(EventFiles, GivesAPipesReaderEachLine)
{
    const std::string path = pipe();
    const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    EventFile file(path);
    file.append("one", true);
    char text[8] = {};
    EXPECT_EQ(::read(reader, text, sizeof text), 4);
    EXPECT_STREQ(text, "one\n");
    EXPECT_EQ(file.takeFault(), "");
    ::close(reader);
}

TEST_F(EventFiles, NamesAReaderThatGoesAway)
{
    const std::string path = pipe();
    const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    EventFile file(path);
    ::close(reader);
    file.append("one", true);
    EXPECT_EQ(file.takeFault(),
              "events cannot be written to " + path + ": Broken pipe; the update goes on without them");
}

TEST_F(EventFiles, WaitsForASlowReaderOfALongLine)
{
    const std::string path = pipe();
    const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    EventFile file(path);
    const std::string line(300'000, 'x');  // more than a pipe holds
    std::string taken;
    std::thread slow([&] {
        char piece[50'000];
        while (taken.size() <= line.size()) {
            const ssize_t count = ::read(reader, piece, sizeof piece);
            taken.append(piece, count > 0 ? static_cast<std::size_t>(count) : 0);
        }
    });
    file.append(line, false);
    EXPECT_EQ(file.takeFault(), "");
    if (testing::Test::HasFailure()) {
        ::exit(1);  // the reader would wait for ever
    }
    slow.join();
    EXPECT_TRUE(taken == line + "\n");
    ::close(reader);
}

TEST_F(EventFiles, GivesAReaderThatTakesNothingASecondInAll)
{
    const std::string path = pipe();
    const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    EventFile file(path);
    const std::string line(300'000, 'x');
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 5; ++i) {
        file.append(line, false);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    EXPECT_EQ(file.takeFault(), "events cannot be written to " + path +
                                    ": Resource temporarily unavailable; the update goes on without them");
    ::close(reader);
}
