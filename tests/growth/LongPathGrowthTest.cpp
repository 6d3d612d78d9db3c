// Twice the length of a path that an archive names, at most 2.2 times the steps, whether there is anything there or
// not.
#include <gtest/gtest.h>

#include <memory>

#include "ZoITrellanInspector.h"
#include "growth/Steps.h"
#include "support/MessageCapture.h"
#include "support/Namespaces.h"
#include "support/OpenUpdater.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "support/UpdaterOptions.h"

using nlohmann::ordered_json;

namespace {

constexpr unsigned size = 5000;

// An updater with an archive that has a file for the drive, and another one for a board that is not there, whose path
// has so many folders.
class LongPath {
public:
    explicit LongPath(unsigned folders)
        : archive(description(
              {fileEntry("x.cfg", {{"boardType", "KR5120"}, {"targetPath", "x.cfg"}, {"version", "2.0"}}),
               fileEntry("x.cfg", {{"boardType", "KR9999"}, {"targetPath", pathOf(folders)}, {"version", "2.0"}})})),
          target(device(drive.path().string()))
    {
        drive.write("x.cfg", "old");
        archive.addFile("x.cfg", "new");
        updater = std::make_unique<OpenUpdater>(optionsFor(ZoNTrellanUpdater::UPDATE, archive.path()));
        quiet = std::make_unique<MessageCapture>(*updater);
        EXPECT_EQ(updater->apply(), 0U) << quiet->text();
    }

    TempDir drive;
    TestArchive archive;
    SimulatedTarget target;
    std::unique_ptr<OpenUpdater> updater;
    std::unique_ptr<MessageCapture> quiet;

private:
    static std::string pathOf(unsigned folders)
    {
        std::string path;
        for (unsigned i = 0; i < folders; ++i) {
            path += "a/";
        }
        return path + "x.cfg";
    }

    static ordered_json device(const std::string& drive)
    {
        ordered_json document =
            ::target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}},
                            {fileElement(1, {{"NAME", "Configuration"}, {"LOCATION", "x.cfg"}, {"VERSION", "1.0"}})})});
        document["flashDrive"] = drive;
        return document;
    }
};

}  // namespace

TEST(LongPathGrowth, OfACheckIsThatOfThePath)
{
    expectTwiceTheStepsAtMost(size, [](unsigned folders) {
        const LongPath world(folders);
        const std::unique_ptr<ZoITrellanInspector> inspector(ZoITrellanInspector::createInstance(*world.updater));
        return stepsOf([&] { inspector->checkArchive(nullptr, nullptr); });
    });
}

TEST(LongPathGrowth, OfAnUpdateIsThatOfThePath)
{
    SKIP_WITHOUT_MOUNT();
    expectTwiceTheStepsAtMost(size, [](unsigned folders) {
        const LongPath world(folders);
        const std::size_t steps = stepsOf([&] { EXPECT_EQ(world.updater->run(), 1U) << world.quiet->text(); });
        EXPECT_EQ(readText(world.drive.path() / "x.cfg"), "new");
        return steps;
    });
}
