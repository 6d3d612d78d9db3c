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
    const TargetBeside left("target.json.aB3xy6");
    const Session session;
    EXPECT_NE(session.handle, 0U);
    EXPECT_FALSE(fs::exists(left.file));
}

TEST(LeftOverFiles, StayWhileAnotherProcessMayBeWritingThem)
{
    const TargetBeside written("target.json.aB3xy6");
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
         {"target.json.backup", "target.json.Test01", "target.json.myCopy", "target.json.240131", "target.json.9Nov26",
          "target.json.v2Fix1", "target.json.aB3xYz", "target.json.aB3xy", "target.json.aB3xy67", "target.json.aB3-y6",
          "target.jsonaB3xy6", "other.json.aB3xy6", "aB3xy6"}) {
        const TargetBeside other(name);
        const Session session;
        EXPECT_NE(session.handle, 0U);
        EXPECT_TRUE(fs::exists(other.file)) << name;
    }
}

TEST(LeftOverFiles, AreNeitherFoldersNorLinks)
{
    const SimulatedTarget device(target({}));
    fs::create_directory(device.folder() / "target.json.aB3xy6");
    fs::create_symlink("target.json", device.folder() / "target.json.bB3xU8");
    const Session session;
    EXPECT_TRUE(fs::is_directory(device.folder() / "target.json.aB3xy6"));
    EXPECT_TRUE(fs::is_symlink(device.folder() / "target.json.bB3xU8"));
}

TEST(TemporaryEndings, AreMixedAsNobodyNamesACopy)
{
    for (const char* const ending : {"aB3xy6", "xy9Zsi", "0aB0Ph", "Run2UF"}) {
        EXPECT_TRUE(isTemporaryEnding(ending)) << ending;
    }
    for (const char* const ending : {"backup", "BACKUP", "Backup", "myCopy", "1stTry", "Test01", "old123", "A1B2C3",
                                     "a1b2c3", "", "aB3xy", "aB3xy67", "aB3.Yz", "aB3xy\xc3", "aB3xy "}) {
        EXPECT_FALSE(isTemporaryEnding(ending)) << ending;
    }
}

// The last two characters are the checksum (CRC-32) of the first four, by 62 * 62, in the digits 0 to 9, A to Z, a to
// z.
TEST(TemporaryEndings, HaveAChecksumThatNobodysDateHas)
{
    for (const char* const ending : {"9NovDo", "1DecI4", "20NoPE", "v2FiJh"}) {
        EXPECT_TRUE(isTemporaryEnding(ending)) << ending;
    }
    for (const char* const ending : {"9Nov26", "1Dec25", "20Nov1", "v2Fix1", "9NovoD", "9Novdo", "8NovDo", "aB3xYz"}) {
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
