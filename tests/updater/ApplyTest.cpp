// apply: what each command reads, and what is said when that fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Updating.h"
#include "inventory/ZoCUpdateInventory.h"
#include "support/OpenUpdater.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

using Messages = std::vector<std::string>;

const std::string unreadableInventory =
    "ERROR: Cannot read target device information.\n"
    "\tPower-cycle the system and retry.\n"
    "\tIf the problem persists, contact Velorant support.\n";

struct Applied {
    unsigned result;
    Messages messages;
};

Applied applyWith(const ZoTOptions& options)
{
    ZoCTrellanUpdater updater(options);
    const MessageCapture capture(updater);
    const unsigned result = updater.apply();
    return {result, capture.fragments()};
}

ordered_json brokenTarget()
{
    ordered_json document = processorTarget();
    document["script"]["scan"] = {{{"result", 1}}};
    return document;
}

// A target whose board has an element that no file of the archive fits.
ordered_json unsupportedTarget()
{
    return target({processorBoard({installedFirmware(), installedFirmware(2)})});
}

}  // namespace

class ApplyEachCommand : public Updating, public testing::WithParamInterface<unsigned> {
protected:
    static bool isOneOf(const std::vector<unsigned>& commands)
    {
        return std::find(commands.begin(), commands.end(), GetParam()) != commands.end();
    }

    static bool printsTheBanner() { return !isOneOf({TOOL_VERSION, ARCHIVE_VERSION, OUTPUT_DESCRIPTION}); }
    static bool readsTheArchive()
    {
        return isOneOf({ARCHIVE_VERSION, PRINT_ARCHIVE, OUTPUT_DESCRIPTION, COMPARE_VERSIONS, UPDATE});
    }
    static bool readsTheInventory() { return isOneOf({INSTALLED_VERSIONS, READ_INVENTORY, COMPARE_VERSIONS, UPDATE}); }

    // How many messages this command prints when it prints `others` beside its banner.
    static std::size_t withBanner(std::size_t others) { return others + (printsTheBanner() ? 1 : 0); }
};

TEST_P(ApplyEachCommand, SucceedsWithTheBannerThatBelongsToIt)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive archive(description({firmwareEntry()}));
    const Applied applied = applyWith(optionsFor(GetParam(), archive.path()));
    EXPECT_EQ(applied.result, 0u);
    EXPECT_EQ(applied.messages.size(), withBanner(0));
}

TEST_P(ApplyEachCommand, FailsOnAMissingArchiveWhenItNeedsOne)
{
    const SimulatedTarget device(processorTarget());
    const Applied applied = applyWith(optionsFor(GetParam(), "/no/such/archive"));
    EXPECT_EQ(applied.result, readsTheArchive() ? 1u : 0u);
    EXPECT_EQ(applied.messages.size(), withBanner(readsTheArchive() ? 2 : 0));
}

TEST_P(ApplyEachCommand, ScansTheTargetOnceWhenItNeedsTheInventory)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive archive(description({firmwareEntry()}));
    applyWith(optionsFor(GetParam(), archive.path()));
    const std::size_t scans = readsTheInventory() ? 1 : 0;
    EXPECT_EQ(callsOf("scan", device.trace()).size(), scans);
    EXPECT_EQ(callsOf("deleteInventoryTree", device.trace()).size(), scans);
}

TEST_P(ApplyEachCommand, FailsOnAnUnreadableTargetWhenItNeedsTheInventory)
{
    const SimulatedTarget device(brokenTarget());
    const TestArchive archive(description({firmwareEntry()}));
    const Applied applied = applyWith(optionsFor(GetParam(), archive.path()));
    EXPECT_EQ(applied.result, readsTheInventory() ? 1u : 0u);
    EXPECT_EQ(applied.messages.size(), withBanner(readsTheInventory() ? 1 : 0));
}

TEST_P(ApplyEachCommand, AssignsFilesOnlyForComparisonAndUpdate)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive archive(description({firmwareEntry()}));
    ZoCTrellanUpdater updater(optionsFor(GetParam(), archive.path()));
    const MessageCapture quiet(updater);
    ASSERT_EQ(updater.apply(), 0u);
    const auto elements = elementsOf(updater);
    ASSERT_EQ(elements.size(), readsTheInventory() ? 1u : 0u);
    for (const ZoTUpdateElement& element : elements) {
        EXPECT_EQ(element.hasUpdateFile, isOneOf({COMPARE_VERSIONS, UPDATE}));
    }
}

TEST_P(ApplyEachCommand, ChecksTheSupportOnlyForAnUpdate)
{
    const SimulatedTarget device(unsupportedTarget());
    const TestArchive archive(description({firmwareEntry()}));
    ZoCTrellanUpdater updater(optionsFor(GetParam(), archive.path()));
    const MessageCapture capture(updater);
    const bool checks = GetParam() == UPDATE;
    EXPECT_EQ(updater.apply(), checks ? 2u : 0u);
    EXPECT_EQ(capture.fragments().size(), withBanner(checks ? 1 : 0));
    for (const ZoTUpdateElement& element : elementsOf(updater)) {
        EXPECT_EQ(element.disabled, checks) << element.index;
    }
}

INSTANTIATE_TEST_SUITE_P(Command, ApplyEachCommand, testing::Range(0u, 9u));

class Apply : public Updating {};

TEST_F(Apply, PrintsTheBannerInOnePieceBeforeAnythingElse)
{
    const Applied applied = applyWith(optionsFor(PRINT_ARCHIVE));
    EXPECT_EQ(applied.result, 1u);
    ASSERT_EQ(applied.messages.size(), 3u);
    const std::string firstLine = "\nVelorant Device Update Tool, Vs 1.0\n";
    const std::string& banner = applied.messages[0];
    EXPECT_TRUE(banner.starts_with(firstLine)) << banner;
    EXPECT_TRUE(banner.ends_with("\n \n")) << banner;
    EXPECT_EQ(std::count(banner.begin(), banner.end(), '\n'), 4);
    EXPECT_GT(banner.find('\n', firstLine.size()), firstLine.size()) << "empty notice";
}

TEST_F(Apply, TellsWhatIsWrongWithTheArchiveFirst)
{
    const Applied applied = applyWith(optionsFor(OUTPUT_DESCRIPTION, "/no/such/archive"));
    EXPECT_EQ(applied.result, 1u);
    EXPECT_EQ(applied.messages, (Messages{"ERROR: Cannot open archive description file /no/such/archive/archive.json\n",
                                          "ERROR: Failed to read firmware archive.\n"}));
}

TEST_F(Apply, TellsInOnePieceThatTheTargetIsUnreadable)
{
    const SimulatedTarget device(brokenTarget());
    const Applied applied = applyWith(optionsFor(READ_INVENTORY));
    EXPECT_EQ(applied.result, 1u);
    ASSERT_EQ(applied.messages.size(), 2u);
    EXPECT_EQ(applied.messages[1], unreadableInventory);
}

TEST_F(Apply, ReadsNoInventoryAfterAnUnreadableArchive)
{
    const SimulatedTarget device(processorTarget());
    EXPECT_EQ(applyWith(optionsFor(UPDATE, "/no/such/archive")).result, 1u);
    EXPECT_TRUE(callsOf("scan", device.trace()).empty());
}

TEST_F(Apply, ReadsTheDescriptionFileThatTheOptionsName)
{
    TestArchive archive(description({}));
    archive.addFile("other.json", "{}");
    ZoTOptions options = optionsFor(ARCHIVE_VERSION, archive.path());
    options.descriptionFileName = "other.json";
    const Applied applied = applyWith(options);
    EXPECT_EQ(applied.result, 1u);
    ASSERT_EQ(applied.messages.size(), 2u);
    EXPECT_NE(applied.messages[0].find("\"info\""), std::string::npos) << applied.messages[0];
}

TEST_F(Apply, KeepsTheErrorsOfAFailedScanInTheMasterErrorList)
{
    ordered_json document = processorTarget();
    document["script"]["scan"] = {{{"result", 1}, {"errors", {{{"code", 77}, {"text", "no answer"}}}}}};
    const SimulatedTarget device(document);
    EXPECT_EQ(applyWith(optionsFor(READ_INVENTORY)).result, 1u);
    ASSERT_EQ(masterErrors().getErrorCount(), 1u);
    EXPECT_EQ(masterErrors().getErrorCode(0), 77u);
    EXPECT_STREQ(masterErrors().getErrorText(0), "no answer");
}

TEST_F(Apply, SucceedsInSpiteOfErrorsThatDidNotStopTheScan)
{
    ordered_json document = processorTarget();
    document["script"]["scan"] = {{{"errors", {{{"code", 77}, {"text", "noise"}}}}}};
    const SimulatedTarget device(document);
    EXPECT_EQ(applyWith(optionsFor(READ_INVENTORY)).result, 0u);
    EXPECT_EQ(masterErrors().getErrorCount(), 1u);
}

TEST_F(Apply, ForgetsTheFilesOfAnArchiveThatCannotBeReadAgain)
{
    const SimulatedTarget target(processorTarget());
    TestArchive archive(description({firmwareEntry()}));
    archive.addFile("firmware.bin", "firmware");
    const std::unique_ptr<ZoITrellanUpdater> updater(
        ZoITrellanUpdater::createInstance(optionsFor(ZoNTrellanUpdater::COMPARE_VERSIONS, archive.path())));
    const MessageCapture messages(*updater);
    ASSERT_EQ(updater->apply(), 0u);
    ASSERT_TRUE(elementsOf(*updater).at(0).hasUpdateFile);

    archive.addFile("archive.json", "{}");
    EXPECT_EQ(updater->apply(), 1u);

    EXPECT_FALSE(elementsOf(*updater).at(0).hasUpdateFile);
    EXPECT_EQ(elementsOf(*updater).at(0).availableVersion, "");
}

TEST_F(Apply, ForgetsThatAnUpdateIsNotRequiredWithTheFileItWasFor)
{
    const SimulatedTarget target(processorTarget());
    TestArchive archive(description({firmwareEntry({{"version", "23.2"}, {"checksumCrc32", 5}})}));
    OpenUpdater updater(optionsFor(COMPARE_VERSIONS, archive.path()));
    const MessageCapture messages(updater);
    const auto& elements = updater.getInventory().getUpdateElementList();
    ASSERT_EQ(updater.apply(), 0u);
    ASSERT_TRUE(elements.front().notRequired);

    archive.addFile("archive.json", "{}");
    EXPECT_EQ(updater.apply(), 1u);
    EXPECT_FALSE(elements.front().notRequired);
}
