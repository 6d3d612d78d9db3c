// Which updates are not required, and which of those are disabled.
#include "assignment/AssignmentFixture.h"

namespace {

struct Case {
    const char* what;
    ElementData element;
    const char* file;  // further members of the file's entry
    bool notRequired;
    bool disabled;        // without force
    bool disabledForced;  // with force
};

std::ostream& operator<<(std::ostream& out, const Case& c)
{
    return out << c.what;
}

// Standard: whatever differs is replaced. Upgrade: only what is older.
const Case cases[] = {
    {"StandardSameVersionNoChecksum", {.version = "1.0"}, R"({"version": "1.0"})", true, true, false},
    {"StandardNewerVersion", {.version = "1.0"}, R"({"version": "1.1"})", false, false, false},
    {"StandardOlderVersion", {.version = "1.0"}, R"({"version": "0.9"})", false, false, false},
    {"StandardElementWithoutVersion", {}, R"({"version": "1.0"})", false, false, false},
    {"StandardSameVersionSameChecksum",
     {.version = "1.0", .hasChecksum = true, .checksum = 7},
     R"({"version": "1.0", "checksumCrc32": 7})",
     true,
     true,
     false},
    {"StandardSameVersionOtherChecksum",
     {.version = "1.0", .hasChecksum = true, .checksum = 7},
     R"({"version": "1.0", "checksumCrc32": 8})",
     false,
     false,
     false},
    {"StandardSameVersionOtherChecksumButElementReportsNone",
     {.version = "1.0", .hasChecksum = false, .checksum = 7},
     R"({"version": "1.0", "checksumCrc32": 8})",
     true,
     true,
     false},
    {"StandardSameVersionOtherChecksumButElementsIsZero",
     {.version = "1.0", .hasChecksum = true, .checksum = 0},
     R"({"version": "1.0", "checksumCrc32": 8})",
     true,
     true,
     false},
    {"StandardSameVersionFilesChecksumZero",
     {.version = "1.0", .hasChecksum = true, .checksum = 7},
     R"({"version": "1.0", "checksumCrc32": 0})",
     false,
     false,
     false},
    {"StandardSameVersionFilesChecksumUnknown",
     {.version = "1.0", .hasChecksum = true, .checksum = 7},
     R"({"version": "1.0"})",
     false,
     false,
     false},
    {"StandardSameVersionBothChecksumsUnknown",
     {.version = "1.0", .hasChecksum = true, .checksum = 0xFFFFFFFE},
     R"({"version": "1.0"})",
     true,
     true,
     false},
    {"StandardOtherVersionSameChecksum",
     {.version = "1.0", .hasChecksum = true, .checksum = 7},
     R"({"version": "1.1", "checksumCrc32": 7})",
     false,
     false,
     false},
    {"StandardFileWithoutVersionNoChecksum", {.version = "1.0"}, R"({"version": null})", true, true, false},
    {"StandardFileWithoutVersionSameChecksum",
     {.version = "1.0", .hasChecksum = true, .checksum = 7},
     R"({"version": null, "checksumCrc32": 7})",
     true,
     true,
     false},
    {"StandardFileWithoutVersionOtherChecksum",
     {.version = "1.0", .hasChecksum = true, .checksum = 7},
     R"({"version": null, "checksumCrc32": 8})",
     false,
     false,
     false},
    {"UpgradeNewerVersion", {.version = "1.0"}, R"({"mode": "upgrade", "version": "1.1"})", false, false, false},
    {"UpgradeReleaseOfAnAlpha", {.version = "1.1a3"}, R"({"mode": "upgrade", "version": "1.1"})", false, false, false},
    {"UpgradeSameVersion", {.version = "1.0"}, R"({"mode": "upgrade", "version": "1.0"})", true, true, true},
    {"UpgradeOlderVersion", {.version = "1.0"}, R"({"mode": "upgrade", "version": "0.9"})", true, true, true},
    {"UpgradeSameVersionOtherChecksum",
     {.version = "1.0", .hasChecksum = true, .checksum = 7},
     R"({"mode": "upgrade", "version": "1.0", "checksumCrc32": 8})",
     true,
     true,
     true},
    {"UpgradeFileWithoutVersion", {.version = "1.0"}, R"({"mode": "upgrade", "version": null})", true, true, true},
    {"UpgradeNeitherHasAVersion", {}, R"({"mode": "upgrade", "version": null})", true, true, true},
    {"UpgradeElementWithoutVersion", {}, R"({"mode": "upgrade", "version": "0.1"})", false, false, false},
};

class RedundantUpdatesTable : public AssignmentFixture, public ::testing::WithParamInterface<Case> {
protected:
    const Element& assigned()
    {
        Element& element = addElement(GetParam().element);
        addFileForId(1, Json::parse(GetParam().file));
        assignment().makeAssignment();
        EXPECT_EQ(element.updateFileIndex, 0);
        return element;
    }
};

TEST_P(RedundantUpdatesTable, IsDecidedByVersionAndChecksum)
{
    const Element& element = assigned();
    EXPECT_EQ(element.notRequired, GetParam().notRequired);
    EXPECT_EQ(element.disabled, GetParam().disabled);
}

TEST_P(RedundantUpdatesTable, ForceEnablesStandardUpdatesOnly)
{
    options.force = true;
    const Element& element = assigned();
    EXPECT_EQ(element.notRequired, GetParam().notRequired);
    EXPECT_EQ(element.disabled, GetParam().disabledForced);
}

INSTANTIATE_TEST_SUITE_P(Cases, RedundantUpdatesTable, ::testing::ValuesIn(cases),
                         [](const auto& info) { return std::string(info.param.what); });

class RedundantUpdates : public AssignmentFixture {
protected:
    // An element that already holds the content of its file.
    Element& addUpToDate()
    {
        if (files().empty()) {
            addFileForId(1, {{"version", "1.0"}});
        }
        return addElement({.version = "1.0"});
    }
};

TEST_F(RedundantUpdates, AreAStepOfTheirOwnThatLooksAtTheFilesThatElementsHave)
{
    Element& element = addUpToDate();
    assignment().computeRedundantUpdates();
    EXPECT_FALSE(element.notRequired);
    assignment().assignUpdateFiles();
    assignment().computeRedundantUpdates();
    EXPECT_TRUE(element.notRequired);
    EXPECT_TRUE(element.isUpToDate);
    EXPECT_TRUE(element.disabled);
}

TEST_F(RedundantUpdates, AnInvalidElementIsAlwaysUpdated)
{
    Element& element = addUpToDate();
    element.valid = false;
    assignment().makeAssignment();
    EXPECT_FALSE(element.notRequired);
    EXPECT_FALSE(element.disabled);
}

TEST_F(RedundantUpdates, AnInactiveElementIsAlwaysUpdated)
{
    Element& element = addUpToDate();
    element.active = false;
    assignment().makeAssignment();
    EXPECT_FALSE(element.notRequired);
    EXPECT_FALSE(element.disabled);
}

TEST_F(RedundantUpdates, AnInactiveElementMayBeUpToDateInAConfigurationRun)
{
    options.configuration = true;
    Element& element = addUpToDate();
    element.active = false;
    assignment().makeAssignment();
    EXPECT_TRUE(element.notRequired);
    EXPECT_TRUE(element.disabled);
}

TEST_F(RedundantUpdates, AnInactiveFileSystemElementMayBeUpToDate)
{
    addFile({{"boardType", "T"}, {"targetPath", "/a"}, {"checksumCrc32", 7}});
    Element& element = addFileElement("/a", {.hasChecksum = true, .checksum = 7});
    element.active = false;
    assignment().makeAssignment();
    EXPECT_TRUE(element.notRequired);
    EXPECT_TRUE(element.disabled);
}

TEST_F(RedundantUpdates, AnInvalidFileSystemElementIsAlwaysUpdated)
{
    options.configuration = true;
    addFile({{"boardType", "T"}, {"targetPath", "/a"}, {"checksumCrc32", 7}});
    Element& element = addFileElement("/a", {.hasChecksum = true, .checksum = 7});
    element.valid = false;
    assignment().makeAssignment();
    EXPECT_FALSE(element.notRequired);
}

TEST_F(RedundantUpdates, ANewFileSystemElementIsAlwaysUpdated)
{
    makeTemplate();
    addFile({{"boardType", "T"}, {"targetPath", "/a"}, {"version", nullptr}});
    assignment().makeAssignment();
    ASSERT_EQ(elements().size(), 1u);
    EXPECT_FALSE(elements().front().notRequired);
    EXPECT_FALSE(elements().front().disabled);
}

TEST_F(RedundantUpdates, AnElementWithoutAFileIsNotMarked)
{
    Element& element = addElement({.version = "1.0"});
    assignment().makeAssignment();
    EXPECT_FALSE(element.notRequired);
    EXPECT_FALSE(element.disabled);
}

TEST_F(RedundantUpdates, ANeededUpdateOfADisabledElementStaysDisabled)
{
    Element& element = addElement({.version = "0.9"});
    element.disabled = true;
    addFileForId(1, {{"version", "1.0"}});
    assignment().makeAssignment();
    EXPECT_FALSE(element.notRequired);
    EXPECT_TRUE(element.disabled);
}

TEST_F(RedundantUpdates, ForceDoesNotEnableADisabledElement)
{
    options.force = true;
    Element& element = addUpToDate();
    element.disabled = true;
    assignment().makeAssignment();
    EXPECT_TRUE(element.notRequired);
    EXPECT_TRUE(element.disabled);
}

}  // namespace
