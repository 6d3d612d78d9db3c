// What a process leaves beside the target file that ends while it is writing it.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "Device.h"
#include "simulation/target/TemporaryEnding.h"
#include "support/AnotherProcess.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TextFile.h"

using TrellanSimulation::drawTemporaryEnding;
using TrellanSimulation::isTemporaryEnding;
namespace fs = std::filesystem;

namespace {

// A target with a file beside it.
class TargetBeside {
public:
    explicit TargetBeside(const std::string& name) : file(device.folder() / name) { writeText(file, "content"); }

    const SimulatedTarget device{target({})};
    const fs::path file;
    const Scan scan;
};

}  // namespace

TEST(LeftOverFiles, AreRemovedByTheNextWhoLocksTheTarget)
{
    const TargetBeside left("target.json.aB3xYz");
    const Session session;
    EXPECT_NE(session.handle, 0U);
    EXPECT_FALSE(fs::exists(left.file));
}

TEST(LeftOverFiles, StayWhileAnotherProcessMayBeWritingThem)
{
    const TargetBeside written("target.json.aB3xYz");
    const Session session;
    writeText(written.file, "content");
    EXPECT_EQ(inAnotherProcess([] {
                  const Session second;
                  return second.handle == 0 ? 0 : 1;
              }),
              0);
    EXPECT_TRUE(fs::exists(written.file));
}

TEST(LeftOverFiles, AreNotThoseThatUsersNameAlike)
{
    for (const char* const name :
         {"target.json.backup", "target.json.Test01", "target.json.myCopy", "target.json.240131", "target.json.aB3xY",
          "target.json.aB3xYz7", "target.json.aB3-Yz", "target.jsonaB3xYz", "other.json.aB3xYz", "aB3xYz"}) {
        const TargetBeside other(name);
        const Session session;
        EXPECT_NE(session.handle, 0U);
        EXPECT_TRUE(fs::exists(other.file)) << name;
    }
}

TEST(LeftOverFiles, AreNeitherFoldersNorLinks)
{
    const SimulatedTarget device(target({}));
    fs::create_directory(device.folder() / "target.json.aB3xYz");
    fs::create_symlink("target.json", device.folder() / "target.json.bB3xYz");
    const Session session;
    EXPECT_TRUE(fs::is_directory(device.folder() / "target.json.aB3xYz"));
    EXPECT_TRUE(fs::is_symlink(device.folder() / "target.json.bB3xYz"));
}

TEST(TemporaryEndings, AreMixedAsNobodyNamesACopy)
{
    for (const char* const ending : {"aB3xYz", "AbCdEf", "xy9Z00", "0aB0cd"}) {
        EXPECT_TRUE(isTemporaryEnding(ending)) << ending;
    }
    for (const char* const ending : {"backup", "BACKUP", "Backup", "myCopy", "1stTry", "Test01", "old123", "A1B2C3",
                                     "a1b2c3", "", "aB3xY", "aB3xYz7", "aB3.Yz", "aB3xY\xc3", "aB3xY "}) {
        EXPECT_FALSE(isTemporaryEnding(ending)) << ending;
    }
}

TEST(TemporaryEndings, AreRecognisedWhicheverIsDrawn)
{
    for (int draw = 0; draw < 1000; ++draw) {
        const std::string ending = drawTemporaryEnding();
        EXPECT_TRUE(isTemporaryEnding(ending)) << ending;
    }
}

TEST(TemporaryEndings, AreDrawnFromAllDigitsAndLetters)
{
    std::string drawn;
    for (int draw = 0; draw < 1000; ++draw) {
        drawn += drawTemporaryEnding();
    }
    for (const char each : std::string("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")) {
        EXPECT_NE(drawn.find(each), std::string::npos) << each;
    }
}

TEST(TemporaryEndings, DifferFromDrawToDraw)
{
    EXPECT_NE(drawTemporaryEnding(), drawTemporaryEnding());
}
