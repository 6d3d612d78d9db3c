// apply: what each command reads, and what is said when that fails.
#include <gtest/gtest.h>

#include <string>

#include "Updating.h"
#include "inventory/ZoCUpdateInventory.h"
#include "support/MessageCapture.h"
#include "support/OpenUpdater.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

const std::string unreadableInventory =
    "ERROR: Cannot read target device information.\n"
    "\tPower-cycle the system and retry.\n"
    "\tIf the problem persists, contact Velorant support.\n";

struct Applied {
    unsigned result;
    std::string text;
};

Applied apply(const ZoTOptions& options)
{
    ZoCTrellanUpdater updater(options);
    const MessageCapture capture(updater);
    const unsigned result = updater.apply();
    return {result, capture.text()};
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

std::string missingDescription(const std::string& folder)
{
    return "ERROR: Cannot open archive description file " + folder +
           "/archive.json\n"
           "ERROR: Failed to read firmware archive.\n";
}

}  // namespace

class ApplyEachCommand : public Updating, public testing::WithParamInterface<unsigned> {
protected:
    // Whether this command does what `commands` lists.
    static bool isOneOf(const std::string& commands)
    {
        return commands.find(static_cast<char>('0' + GetParam())) != std::string::npos;
    }

    // `text` without the banner that this command prints.
    static std::string afterItsBanner(const std::string& text) { return isOneOf("013") ? text : afterBanner(text); }
};

TEST_P(ApplyEachCommand, SucceedsWithTheBannerThatBelongsToIt)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive archive(description({firmwareEntry()}));
    const Applied applied = apply(optionsFor(GetParam(), archive.path()));
    EXPECT_EQ(applied.result, 0u);
    EXPECT_EQ(afterItsBanner(applied.text), "");
}

TEST_P(ApplyEachCommand, FailsOnAMissingArchiveWhenItNeedsOne)
{
    const SimulatedTarget device(processorTarget());
    const Applied applied = apply(optionsFor(GetParam(), "/no/such/archive"));
    EXPECT_EQ(applied.result, isOneOf("12367") ? 1u : 0u);
    EXPECT_EQ(afterItsBanner(applied.text), isOneOf("12367") ? missingDescription("/no/such/archive") : "");
}

TEST_P(ApplyEachCommand, ScansTheTargetOnceWhenItNeedsTheInventory)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive archive(description({firmwareEntry()}));
    apply(optionsFor(GetParam(), archive.path()));
    const std::size_t scans = isOneOf("4567") ? 1 : 0;
    EXPECT_EQ(callsOf("scan", device.trace()).size(), scans);
    EXPECT_EQ(callsOf("deleteInventoryTree", device.trace()).size(), scans);
}

TEST_P(ApplyEachCommand, FailsOnAnUnreadableTargetWhenItNeedsTheInventory)
{
    const SimulatedTarget device(brokenTarget());
    const TestArchive archive(description({firmwareEntry()}));
    const Applied applied = apply(optionsFor(GetParam(), archive.path()));
    EXPECT_EQ(applied.result, isOneOf("4567") ? 1u : 0u);
    EXPECT_EQ(afterItsBanner(applied.text), isOneOf("4567") ? unreadableInventory : "");
}

TEST_P(ApplyEachCommand, AssignsFilesOnlyForComparisonAndUpdate)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive archive(description({firmwareEntry()}));
    ZoCTrellanUpdater updater(optionsFor(GetParam(), archive.path()));
    const MessageCapture quiet(updater);
    ASSERT_EQ(updater.apply(), 0u);
    const auto elements = elementsOf(updater);
    ASSERT_EQ(elements.size(), isOneOf("4567") ? 1u : 0u);
    for (const ZoTUpdateElement& element : elements) {
        EXPECT_EQ(element.hasUpdateFile, isOneOf("67"));
    }
}

TEST_P(ApplyEachCommand, ChecksTheSupportOnlyForAnUpdate)
{
    const SimulatedTarget device(unsupportedTarget());
    const TestArchive archive(description({firmwareEntry()}));
    ZoCTrellanUpdater updater(optionsFor(GetParam(), archive.path()));
    const MessageCapture capture(updater);
    const bool checks = isOneOf("7");
    EXPECT_EQ(updater.apply(), checks ? 2u : 0u);
    EXPECT_EQ(afterItsBanner(capture.text()),
              checks ? "ERROR: The target system is not supported by this firmware archive.\n" : "");
    for (const ZoTUpdateElement& element : elementsOf(updater)) {
        EXPECT_EQ(element.disabled, checks) << element.index;
    }
}

INSTANTIATE_TEST_SUITE_P(Command, ApplyEachCommand, testing::Range(0u, 9u));

class Apply : public Updating {};

TEST_F(Apply, PrintsNothingForTheToolVersion)
{
    const Applied applied = apply(optionsFor(TOOL_VERSION));
    EXPECT_EQ(applied.result, 0u);
    EXPECT_EQ(applied.text, "");
}

TEST_F(Apply, PrintsTheBannerInOnePieceBeforeAnythingElse)
{
    ZoCTrellanUpdater updater(optionsFor(PRINT_ARCHIVE));
    const MessageCapture capture(updater);
    EXPECT_EQ(updater.apply(), 1u);
    ASSERT_EQ(capture.fragments().size(), 3u);
    EXPECT_EQ(afterBanner(capture.fragments()[0]), "");
    EXPECT_EQ(capture.fragments()[2], "ERROR: Failed to read firmware archive.\n");
}

TEST_F(Apply, TellsInOnePieceThatTheTargetIsUnreadable)
{
    const SimulatedTarget device(brokenTarget());
    ZoCTrellanUpdater updater(optionsFor(READ_INVENTORY));
    const MessageCapture capture(updater);
    EXPECT_EQ(updater.apply(), 1u);
    ASSERT_EQ(capture.fragments().size(), 2u);
    EXPECT_EQ(capture.fragments()[1], unreadableInventory);
}

TEST_F(Apply, FailsWithoutABannerWhenTheDescriptionCannotBeOutput)
{
    const Applied applied = apply(optionsFor(OUTPUT_DESCRIPTION, "/no/such/archive"));
    EXPECT_EQ(applied.result, 1u);
    EXPECT_EQ(applied.text, missingDescription("/no/such/archive"));
}

TEST_F(Apply, TellsWhatIsWrongWithTheArchiveFirst)
{
    const TestArchive archive("not JSON");
    const Applied applied = apply(optionsFor(ARCHIVE_VERSION, archive.path()));
    EXPECT_EQ(applied.result, 1u);
    EXPECT_EQ(applied.text, "ERROR: The archive description file " + archive.path() +
                                "/archive.json is corrupt. Invalid JSON data.\n"
                                "ERROR: Failed to read firmware archive.\n");
}

TEST_F(Apply, ReadsNoInventoryAfterAnUnreadableArchive)
{
    const SimulatedTarget device(processorTarget());
    EXPECT_EQ(apply(optionsFor(UPDATE, "/no/such/archive")).result, 1u);
    EXPECT_TRUE(callsOf("scan", device.trace()).empty());
}

TEST_F(Apply, ReadsTheDescriptionFileThatTheOptionsName)
{
    TestArchive archive(description({}));
    archive.addFile("other.json", "{}");
    ZoTOptions options = optionsFor(ARCHIVE_VERSION, archive.path());
    options.descriptionFileName = "other.json";
    const Applied applied = apply(options);
    EXPECT_EQ(applied.result, 1u);
    EXPECT_EQ(applied.text,
              "ERROR: The archive description file is corrupt. Property \"info\" is missing or invalid.\n"
              "ERROR: Failed to read firmware archive.\n");
}

TEST_F(Apply, KeepsTheErrorsOfAFailedScanInTheMasterErrorList)
{
    ordered_json document = processorTarget();
    document["script"]["scan"] = {{{"result", 1}, {"errors", {{{"code", 77}, {"text", "no answer"}}}}}};
    const SimulatedTarget device(document);
    EXPECT_EQ(apply(optionsFor(READ_INVENTORY)).result, 1u);
    ASSERT_EQ(masterErrors().getErrorCount(), 1u);
    EXPECT_EQ(masterErrors().getErrorCode(0), 77u);
    EXPECT_STREQ(masterErrors().getErrorText(0), "no answer");
}

TEST_F(Apply, SucceedsInSpiteOfErrorsThatDidNotStopTheScan)
{
    ordered_json document = processorTarget();
    document["script"]["scan"] = {{{"errors", {{{"code", 77}, {"text", "noise"}}}}}};
    const SimulatedTarget device(document);
    EXPECT_EQ(apply(optionsFor(READ_INVENTORY)).result, 0u);
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
