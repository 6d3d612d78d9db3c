// An inspector that reads one target after another with the archive as it was read.
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "Inspecting.h"
#include "simulation/base/Resources.h"
#include "support/TextFile.h"

namespace {

using nlohmann::ordered_json;

class TargetReading : public Inspecting {
protected:
    // Puts another device into the place of the target.
    void exchange(const ordered_json& document) const { writeText(simulated->path(), document.dump()); }

    std::vector<std::uint32_t> elementsOfFiles() const
    {
        std::vector<std::uint32_t> counts;
        for (unsigned i = 0; i < inspector->getFileCount(); ++i) {
            counts.push_back(inspector->getFile(i).elementCount);
        }
        return counts;
    }

    std::vector<std::string> listedTypes() const
    {
        ZoNTrellanUpdater::ZoTUpdateElement* list = nullptr;
        unsigned count = 0;
        updater->getUpdateElementList(list, count);
        const std::unique_ptr<ZoNTrellanUpdater::ZoTUpdateElement[]> owner(list);
        std::vector<std::string> types;
        for (unsigned i = 0; i < count; ++i) {
            types.push_back(list[i].boardType + " " + std::to_string(list[i].index));
        }
        return types;
    }
};

}  // namespace

TEST_F(TargetReading, FindsTheElementsOfTheTargetThatThereIsNow)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1), ioEntry("two.bin", 2)};
    ASSERT_EQ(apply(), 0u);
    ASSERT_EQ(states(), (Names{"update"}));

    exchange(target({ioBoard({installed(3), installed(2, {{"VERSION", "2.0"}, {"CHECKSUM_CRC32", 6}}),
                              installed(1, {{"VERSION", "1.5"}})})}));
    EXPECT_EQ(inspector->readTarget(), 0u);
    EXPECT_EQ(states(), (Names{"noFile", "upToDate", "update"}));
    EXPECT_EQ(listedTypes(), (Names{"IO7 0", "IO7 1", "IO7 2"}));
    EXPECT_EQ(inspector->getElementKeys(1).id, 2u);
    EXPECT_EQ(inspector->getElement(1).filePosition, 1);
    EXPECT_EQ(inspector->getPhaseCount(), 1u);
    EXPECT_EQ(inspector->getTargetErrorCount(), 0u);
    EXPECT_THROW(inspector->getElement(3), std::out_of_range);
}

TEST_F(TargetReading, ReadsTheArchiveOnceAlone)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(ZoNTrellanUpdater::ARCHIVE_VERSION), 0u);
    std::filesystem::remove_all(archive->path());

    ASSERT_EQ(inspector->readTarget(), 0u);
    EXPECT_EQ(states(), (Names{"update"}));
    ASSERT_EQ(inspector->readTarget(), 0u);
    EXPECT_EQ(states(), (Names{"update"}));
    EXPECT_EQ(elementsOfFiles(), (std::vector<std::uint32_t>{1}));
}

TEST_F(TargetReading, CountsTheElementsOfAFileAnew)
{
    boards = {ioBoard({installed(1)}), ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    ASSERT_EQ(elementsOfFiles(), (std::vector<std::uint32_t>{2}));
    exchange(target({ioBoard({installed(1)})}));
    ASSERT_EQ(inspector->readTarget(), 0u);
    EXPECT_EQ(elementsOfFiles(), (std::vector<std::uint32_t>{1}));
}

TEST_F(TargetReading, AppendsAnElementForAFileThatTheNewTargetLacks)
{
    const ordered_json path = {{"boardType", "KR5120"}, {"targetPath", "config/a.cfg"}};
    boards = {hcnBoard({fileElement(1, {{"NAME", "File"}, {"LOCATION", "config/a.cfg"}})})};
    entries = {fileEntry("a.cfg", path)};
    ASSERT_EQ(apply(ZoNTrellanUpdater::COMPARE_VERSIONS), 0u);
    ASSERT_TRUE(inspector->getElement(0).isListed);
    exchange(target({hcnBoard({installed(1)})}));
    ASSERT_EQ(inspector->readTarget(), 0u);
    ASSERT_EQ(inspector->getElementCount(), 2u);
    EXPECT_FALSE(inspector->getElement(1).isListed);
    EXPECT_EQ(inspector->getElementKeys(1).targetPath, "config/a.cfg");
}

TEST_F(TargetReading, ForgetsWhatWasExcluded)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    updater->disableUpdateElement(0);
    ASSERT_EQ(states(), (Names{"excluded"}));
    ASSERT_EQ(inspector->readTarget(), 0u);
    EXPECT_EQ(states(), (Names{"update"}));
}

TEST_F(TargetReading, RefusesAnUpdateOfATargetThatTheArchiveDoesNotSupport)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    exchange(target({hcnBoard({installed(1)}), ioBoard({installed(1)})}));
    EXPECT_EQ(inspector->readTarget(), 2u);
    EXPECT_FALSE(inspector->isTargetSupported());
    EXPECT_EQ(states(), (Names{"noFile", "blocked"}));
    exchange(target({ioBoard({installed(1)})}));
    EXPECT_EQ(inspector->readTarget(), 0u);
    EXPECT_TRUE(inspector->isTargetSupported());
    EXPECT_EQ(states(), (Names{"update"}));
}

TEST_F(TargetReading, TellsWhyATargetCannotBeRead)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    writeText(simulated->path(), "{}");
    EXPECT_EQ(inspector->readTarget(), 1u);
    ASSERT_EQ(inspector->getTargetErrorCount(), 1u);
    EXPECT_EQ(inspector->getTargetError(0).code, 0x26300007u);
    EXPECT_EQ(inspector->getTargetError(0).text,
              "The target file " + simulated->path().string() + " cannot be read: tree: missing.");
    EXPECT_THROW(inspector->getTargetError(1), std::out_of_range);
    EXPECT_EQ(states(), (Names{"noFile"}));
    EXPECT_EQ(elementsOfFiles(), (std::vector<std::uint32_t>{0}));
    EXPECT_EQ(masterErrors().getErrorCount(), 0u);

    exchange(target(boards));
    EXPECT_EQ(inspector->readTarget(), 0u);
    EXPECT_EQ(inspector->getTargetErrorCount(), 0u);
    EXPECT_EQ(states(), (Names{"update"}));
}

TEST_F(TargetReading, TellsWhatOfATargetCannotBeRead)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    script = {{"values", {{"/ROOT/IOMODULE:PRODUCT/NAME", {{{"code", 2}, {"text", "cannot read"}}}}}}};
    ASSERT_EQ(apply(ZoNTrellanUpdater::ARCHIVE_VERSION), 0u);
    EXPECT_EQ(inspector->readTarget(), 0u);
    ASSERT_EQ(inspector->getTargetErrorCount(), 1u);
    EXPECT_EQ(inspector->getTargetError(0).text, "cannot read");
    EXPECT_EQ(masterErrors().getErrorCount(), 0u);
}

TEST_F(TargetReading, NeedsAnArchiveThatWasRead)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(ZoNTrellanUpdater::INSTALLED_VERSIONS), 0u);
    EXPECT_EQ(inspector->readTarget(), 1u);
    EXPECT_EQ(inspector->getElementCount(), 1u);

    options.archivePath = "/nowhere";
    ASSERT_EQ(apply(), 1u);
    EXPECT_EQ(inspector->readTarget(), 1u);
    EXPECT_EQ(inspector->getTargetErrorCount(), 0u);
}

TEST_F(TargetReading, DoesNotPullTheElementsAwayFromUnderARun)
{
    static ZoITrellanInspector* asked;
    static unsigned answer;
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    asked = inspector.get();
    answer = 0;
    updater->setPhaseCallBack([](unsigned) { answer = asked->readTarget(); });
    EXPECT_EQ(updater->run(), 1);
    EXPECT_EQ(answer, 1u);
    EXPECT_EQ(states(), (Names{"updated"}));
}

TEST_F(TargetReading, LetsTheNewTargetBeUpdated)
{
    boards = {ioBoard({installed(1, {{"VERSION", "2.0"}, {"CHECKSUM_CRC32", 6}})})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    ASSERT_EQ(states(), (Names{"upToDate"}));
    exchange(target({ioBoard({installed(1)})}));
    ASSERT_EQ(inspector->readTarget(), 0u);
    EXPECT_EQ(updater->run(), 1);
    EXPECT_EQ(states(), (Names{"updated"}));
}

TEST_F(TargetReading, KeepsNothingOfTheTargetsOfBefore)
{
    boards = {ioBoard({installed(1), installed(2)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    const auto lists = TrellanSimulation::resources().errorLists;
    for (unsigned i = 0; i < 20; ++i) {
        ASSERT_EQ(inspector->readTarget(), 0u);
    }
    EXPECT_EQ(TrellanSimulation::resources().errorLists, lists);
    EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, 0);
}
