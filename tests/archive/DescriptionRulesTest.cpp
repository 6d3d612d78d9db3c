#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "archive/ArchiveReader.h"
#include "archive/DescriptionRules.h"
#include "archive/ObjectMembers.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace ZoNUpdateArchive;

// Every fault as "pointer: message", in the order of the rules; with `onlyFirst` as the reader asks.
class Faults {
public:
    explicit Faults(bool onlyFirst = false)
        : rules([this, onlyFirst](const DescriptionFault& fault) {
              entries.push_back(std::to_string(fault.entry) + "," + std::to_string(fault.board));
              found.push_back(fault.pointer + ": " + fault.message);
              return !onlyFirst;
          })
    {
    }

    std::vector<std::string> ofEntry(const std::string& entry)
    {
        verdict = rules.checkEntry(parseJson(entry), 7);
        return found;
    }

    std::vector<std::string> ofInfo(const std::string& document)
    {
        rules.checkInfo(parseJson(document), [](const std::string&, const ZoNJson::json&) {});
        return found;
    }

    std::vector<std::string> entries;
    std::vector<std::string> found;
    EntryVerdict verdict = EntryVerdict::refused;

private:
    DescriptionRules rules;
};

TEST(DescriptionRules, EveryFaultOfAnEntryIsToldWithItsPlace)
{
    Faults faults;
    EXPECT_THAT(
        faults.ofEntry(R"({"name": 5, "boardType": "A", "id": "x", "boardId": [1, "2", "3"], "mode": "fast",
                                   "version": ""})"),
        ElementsAre("/files/7/name: ERROR: File entry 7 is invalid. A mandatory property is missing or invalid.\n",
                    "/files/7: ERROR: File entry 7 is invalid. A mandatory property is missing or invalid.\n",
                    "/files/7/id: ERROR: File entry 7 is invalid. Property \"id\" has an invalid value.\n",
                    "/files/7/boardId/1: ERROR: File entry 7 is invalid. Property \"boardId\" has invalid elements.\n",
                    "/files/7/version: ERROR: File entry 7 is invalid. Property \"version\" is invalid.\n",
                    "/files/7/mode: ERROR: File entry 7 is invalid. Property \"mode\" is invalid.\n"));
    EXPECT_EQ(faults.verdict, EntryVerdict::refused);
    EXPECT_THAT(faults.entries, ::testing::Each("7,-1"));
}

TEST(DescriptionRules, EveryFaultOfTheBoardObjectsIsToldWithItsPlace)
{
    Faults faults;
    EXPECT_THAT(
        faults.ofEntry(R"({"name": "a", "sequence": 1, "boards": [
                                   {"boardType": "A", "id": 1, "mode": "standard"}, 3, {"id": 2},
                                   {"boardType": [1], "targetPath": "x"}]})"),
        ElementsAre("/files/7/boards/0/mode: ERROR: File entry 7 is invalid. \"boards\" element 0 is invalid. "
                    "Properties \"version\", \"checksumCrc32\" and \"mode\" must not be specified inside a "
                    "\"boards\" element.\n",
                    "/files/7/boards/1: ERROR: File entry 7 is invalid. \"boards\"-entry 1 is invalid.\n",
                    "/files/7/boards/2: ERROR: File entry 7 is invalid. \"boards\"-entry 2 is invalid.\n",
                    "/files/7/boards/3/boardType/0: ERROR: File entry 7 is invalid. Property \"boardType\" of "
                    "\"boards\" element 3 has invalid elements.\n",
                    "/files/7: ERROR: File entry 7 is invalid. Properties \"id\" and \"targetPath\" must not be "
                    "specified at the same time.\n",
                    "/files/7: ERROR: File entry 7 is invalid. Either \"id\" or \"targetPath\" must be "
                    "specified.\n"));
    EXPECT_THAT(faults.entries, ElementsAre("7,0", "7,1", "7,2", "7,3", "7,-1", "7,-1"));
}

TEST(DescriptionRules, EveryFaultOfInfoIsToldWithItsPlace)
{
    EXPECT_THAT(
        Faults().ofInfo(R"({"info": {"formatVersion": "2.0", "archiveVersion": "x", "archiveVariant": 1}})"),
        ElementsAre("/info/formatVersion: ERROR: This firmware archive cannot be processed by the installed firmware.\n"
                    "       You might need to install another (newer) firmware first.\n",
                    "/info/archiveVersion: ERROR: The archive description file is corrupt. \"archiveVersion\" is "
                    "invalid.\n",
                    "/info: ERROR: The archive description file is corrupt. \"productName\" is missing or invalid.\n",
                    "/info/archiveVariant: ERROR: The archive description file is corrupt. \"archiveVariant\" is "
                    "invalid.\n",
                    "/info: ERROR: The archive description file is corrupt. \"archiveName\" is missing or invalid.\n"));
}

TEST(DescriptionRules, AReaderThatWantsOneFaultGetsTheOneThatItNames)
{
    EXPECT_THAT(
        Faults(true).ofEntry(R"({"name": "a", "sequence": 1, "boardType": 5, "mode": 7, "id": "x"})"),
        ElementsAre("/files/7/mode: ERROR: File entry 7 is invalid. Property \"mode\" has an invalid value.\n"));
    EXPECT_THAT(
        Faults(true).ofInfo(R"({"info": {"formatVersion": 1}})"),
        ElementsAre("/info/formatVersion: ERROR: The archive description file is corrupt. \"formatVersion\" is missing "
                    "or invalid.\n"));
}

TEST(DescriptionRules, NothingOfAnEntryThatIsPassedOverIsChecked)
{
    Faults faults;
    EXPECT_THAT(faults.ofEntry(R"({"featureLevel": 3, "name": 5})"), IsEmpty());
    EXPECT_EQ(faults.verdict, EntryVerdict::passedOver);
}

TEST(DescriptionRules, ASoundEntryIsAccepted)
{
    Faults faults;
    EXPECT_THAT(faults.ofEntry(R"({"featureLevel": 2, "name": "a", "sequence": 1, "boardType": "A", "id": 1})"),
                IsEmpty());
    EXPECT_EQ(faults.verdict, EntryVerdict::accepted);
}

}  // namespace
