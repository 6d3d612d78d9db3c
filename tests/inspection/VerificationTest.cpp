// Whether the target has, after an update, what it was given: by another scan.
#include <fstream>
#include <stdexcept>

#include "Inspecting.h"
#include "support/EmptyInspector.h"
#include "support/Namespaces.h"
#include "support/UpdateFiles.h"

using testing::ElementsAre;
using namespace ZoNTrellanInspector;

namespace {

std::string nameOf(ZoTVerdict verdict)
{
    switch (verdict) {
        case ZoTVerdict::NOT_VERIFIED:
            return "notVerified";
        case ZoTVerdict::AGREES:
            return "agrees";
        case ZoTVerdict::DIFFERS:
            return "differs";
        case ZoTVerdict::NOT_LISTED:
            return "notListed";
        case ZoTVerdict::AFTER_RESTART:
            return "afterRestart";
    }
    return "unknown";
}

class Verification : public Inspecting {
protected:
    // An I/O board with one element and its file.
    void applyOne(const Json& parameters = Json::object(), const Json& members = Json::object())
    {
        boards = {ioBoard({installed(1, parameters)})};
        entries = {ioEntry("one.bin", 1, members)};
        contents["one.bin"] = "123456789";  // its CRC-32 is what the target has afterwards
        ASSERT_EQ(apply(), 0u);
    }

    // Changes the parameters of the first element on the target.
    void change(const Json& parameters)
    {
        Json document = simulated->document();
        document["tree"]["items"][0]["items"][0]["items"][0]["parameters"].update(parameters);
        std::ofstream(simulated->path()) << document;
    }

    // Reads the target again and verifies; the verdict on each element.
    Names verdicts(unsigned command = ZoNTrellanUpdater::READ_INVENTORY)
    {
        ZoNTrellanUpdater::ZoTOptions again = optionsFor(command, archive->path());
        const std::unique_ptr<ZoITrellanUpdater> later(ZoITrellanUpdater::createInstance(again));
        messages.reset();
        {
            const MessageCapture quiet(*later);
            EXPECT_EQ(later->apply(), 0u);
        }
        messages.emplace(*updater);
        const std::unique_ptr<ZoITrellanInspector> rescanned(ZoITrellanInspector::createInstance(*later));
        inspector->verify(*rescanned);
        Names names;
        for (unsigned i = 0; i < inspector->getElementCount(); ++i) {
            names.push_back(nameOf(inspector->getVerification(i).verdict));
        }
        return names;
    }
};

constexpr unsigned crc32OfDigits = 0xCBF43926;

}  // namespace

TEST_F(Verification, AgreesWithTheFilesChecksum)
{
    applyOne(Json::object(), {{"checksumCrc32", crc32OfDigits}});
    ASSERT_EQ(updater->run(), 1);
    EXPECT_THAT(verdicts(), ElementsAre("agrees"));
    const ZoTVerification& told = inspector->getVerification(0);
    EXPECT_TRUE(told.byChecksum);
    EXPECT_EQ(told.fileChecksum, crc32OfDigits);
    EXPECT_EQ(told.foundChecksum, crc32OfDigits);
    EXPECT_EQ(told.fileVersion, "2.0");
    EXPECT_EQ(told.foundVersion, "1.0");  // a plain file carries none
}

TEST_F(Verification, FindsAnElementThatHasKeptItsOldContent)
{
    applyOne(Json::object(), {{"checksumCrc32", crc32OfDigits}});
    ASSERT_EQ(updater->run(), 1);
    change({{"CHECKSUM_CRC32", 5}});
    EXPECT_THAT(verdicts(), ElementsAre("differs"));
    EXPECT_EQ(inspector->getVerification(0).fileChecksum, crc32OfDigits);
    EXPECT_EQ(inspector->getVerification(0).foundChecksum, 5u);
}

TEST_F(Verification, ComparesVersionsWhereAChecksumIsNotKnown)
{
    for (const Json& checksum : {Json(), Json(0)}) {
        applyOne();
        ASSERT_EQ(updater->run(), 1);
        Json document = simulated->document();
        Json& parameters = document["tree"]["items"][0]["items"][0]["items"][0]["parameters"];
        parameters["VERSION"] = "2.0";
        parameters.erase("CHECKSUM_CRC32");
        if (!checksum.is_null()) {
            parameters["CHECKSUM_CRC32"] = checksum;
        }
        std::ofstream(simulated->path()) << document;
        EXPECT_THAT(verdicts(), ElementsAre("agrees"));
        EXPECT_FALSE(inspector->getVerification(0).byChecksum);

        change({{"VERSION", "1.9"}});
        EXPECT_THAT(verdicts(), ElementsAre("differs"));
        EXPECT_EQ(inspector->getVerification(0).fileVersion, "2.0");
        EXPECT_EQ(inspector->getVerification(0).foundVersion, "1.9");

        change({{"VERSION", ""}});
        EXPECT_THAT(verdicts(), ElementsAre("notVerified"));
    }
}

TEST_F(Verification, CannotTellWhereTheFileHasNeitherChecksumNorVersion)
{
    boards = {ioBoard({installed(1)})};
    entries = {without(ioEntry("one.bin", 1, {{"version", nullptr}}), "checksumCrc32")};
    contents["one.bin"] = UpdateFiles::bitstreamFile(0, 88);
    options.force = true;
    ASSERT_EQ(apply(), 0u);
    ASSERT_EQ(updater->run(), 1);
    EXPECT_THAT(verdicts(), ElementsAre("notVerified"));
    EXPECT_EQ(inspector->getVerification(0).fileVersion, "");
}

TEST_F(Verification, ExpectsWhatIsNotActiveAfterARestart)
{
    applyOne({{"ACTIVE", 0}});
    ASSERT_EQ(updater->run(), 1);
    EXPECT_THAT(verdicts(), ElementsAre("afterRestart"));

    applyOne({{"ACTIVE", 0}}, {{"checksumCrc32", crc32OfDigits}});
    ASSERT_EQ(updater->run(), 1);
    EXPECT_THAT(verdicts(), ElementsAre("agrees"));
}

TEST_F(Verification, LooksAtWhatWasUpdatedOnly)
{
    boards = {ioBoard({installed(1), installed(2), installed(3), installed(4)})};
    entries = {ioEntry("one.bin", 1), ioEntry("two.bin", 2), ioEntry("three.bin", 3)};
    script["elements"]["/ROOT/IOMODULE#3"]["start"] = {{{"errors", {{{"code", 7}, {"text", "refused"}}}}}};
    ASSERT_EQ(apply(), 0u);
    updater->disableUpdateElement(0);
    ASSERT_EQ(updater->run(), 0);
    masterErrors().clear();
    EXPECT_THAT(verdicts(), ElementsAre("notVerified", "differs", "notVerified", "notVerified"));
}

TEST_F(Verification, FindsElementsWhereTheyStandInAnotherOrder)
{
    boards = {ioBoard({installed(1), installed(2)})};
    entries = {ioEntry("one.bin", 1, {{"checksumCrc32", crc32OfDigits}}), ioEntry("two.bin", 2)};
    contents = {{"one.bin", "123456789"}, {"two.bin", "two"}};
    ASSERT_EQ(apply(), 0u);
    ASSERT_EQ(updater->run(), 1);

    Json document = simulated->document();
    Json& elements = document["tree"]["items"][0]["items"][0]["items"];
    std::swap(elements[0], elements[1]);
    elements[0]["id"] = "UPDATE_ELEMENT[1]";
    elements[1]["id"] = "UPDATE_ELEMENT[2]";
    std::ofstream(simulated->path()) << document;
    EXPECT_THAT(verdicts(), ElementsAre("agrees", "differs"));
}

TEST_F(Verification, TellsElementsOfOneIdApartByTheirPlace)
{
    boards = {ioBoard({installed(1, {{"NAME", "first"}}), installed(1, {{"NAME", "second"}})})};
    boards[0]["items"][0]["items"][1]["id"] = "UPDATE_ELEMENT[2]";
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    ASSERT_EQ(updater->run(), 1);
    Json document = simulated->document();
    document["tree"]["items"][0]["items"][0]["items"][0]["parameters"]["CHECKSUM_CRC32"] = 6;
    document["tree"]["items"][0]["items"][0]["items"][1]["parameters"]["CHECKSUM_CRC32"] = 7;
    std::ofstream(simulated->path()) << document;
    EXPECT_THAT(verdicts(), ElementsAre("agrees", "differs"));
}

TEST_F(Verification, TellsThatAnElementIsNotListed)
{
    applyOne();
    ASSERT_EQ(updater->run(), 1);
    Json document = simulated->document();
    document["tree"]["items"][0]["items"][0]["items"] = Json::array();
    std::ofstream(simulated->path()) << document;
    EXPECT_THAT(verdicts(), ElementsAre("notListed"));
}

TEST_F(Verification, TellsThatANewFileIsNotListedUnlessTheTargetListsItNow)
{
    SKIP_WITHOUT_MOUNT();
    boards = {hcnBoard({installed(1)})};
    entries = {fileEntry("hcn.bin", {{"checksumCrc32", crc32OfDigits}}),
               fileEntry("site.cfg", {{"targetPath", "site.cfg"}, {"checksumCrc32", crc32OfDigits}, {"sequence", 2}})};
    contents = {{"hcn.bin", "123456789"}, {"site.cfg", "123456789"}};
    hasFlashDrive = true;
    ASSERT_EQ(apply(), 0u);
    ASSERT_EQ(updater->run(), 1) << messages->text();
    EXPECT_THAT(verdicts(ZoNTrellanUpdater::COMPARE_VERSIONS), ElementsAre("agrees", "notListed"));

    Json document = simulated->document();
    document["tree"]["items"][0]["items"][0]["items"].push_back(fileElement(1, {{"LOCATION", "site.cfg"}}));
    std::ofstream(simulated->path()) << document;
    EXPECT_THAT(verdicts(), ElementsAre("agrees", "agrees"));
}

TEST_F(Verification, IsOfThisLibrarysInspectorsOnly)
{
    applyOne();
    EXPECT_THROW(inspector->getVerification(0), std::out_of_range);
    EmptyInspector other;
    EXPECT_THROW(inspector->verify(other), std::invalid_argument);
    inspector->verify(*inspector);
    EXPECT_EQ(inspector->getVerification(0).verdict, ZoTVerdict::NOT_VERIFIED);
    EXPECT_THROW(inspector->getVerification(1), std::out_of_range);
}
