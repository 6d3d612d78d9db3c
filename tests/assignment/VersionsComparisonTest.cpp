// The comparison of installed and available versions.
#include "assignment/AssignmentFixture.h"
#include "support/Table.h"

namespace {

class VersionsComparison : public AssignmentFixture {
protected:
    std::string table()
    {
        assignment().makeAssignment();
        printed();
        assignment().printVersionsComparison();
        return printed();
    }

    TableRows rows() { return tableRows(table()); }
};

TEST_F(VersionsComparison, WithoutElementsThereIsOnlyTheHeader)
{
    EXPECT_EQ(table(),
              "No. | Update element | Installed | Available | Checksums | Up-to-date | Phase\n"
              "-----------------------------------------------------------------------------\n");
}

TEST_F(VersionsComparison, ShowsInstalledAndAvailableVersionsAndThePhase)
{
    addFileForId(1, {{"version", "1.1"}, {"checksumCrc32", 9}, {"sequence", 5}});
    addFileForId(2, {{"version", "23.2a12"}, {"checksumCrc32", 8}, {"sequence", 2}});
    addElement({.id = 1, .version = "1.0", .hasChecksum = true, .checksum = 7});
    addElement({.id = 2, .version = "23.1", .hasChecksum = true, .checksum = 8});
    EXPECT_EQ(table(),
              "No. | Update element | Installed | Available | Checksums | Up-to-date | Phase\n"
              "-----------------------------------------------------------------------------\n"
              "0   | Element 0      | 1.0       | 1.1       | 7 != 9    | N          | 1    \n"
              "1   | Element 1      | 23.1      | 23.2a12   | 8 == 8    | N          | 0    \n");
}

TEST_F(VersionsComparison, AnElementThatIsUpToDateHasNoPhase)
{
    addFileForId(1, {{"version", "1.0"}, {"checksumCrc32", 7}});
    addElement({.version = "1.0", .hasChecksum = true, .checksum = 7});
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "1.0", "1.0", "7 == 7", "Y", "-"}}));
}

TEST_F(VersionsComparison, AForcedUpdateOfSuchAnElementHasAPhase)
{
    options.force = true;
    addFileForId(1, {{"version", "1.0"}, {"checksumCrc32", 7}});
    addElement({.version = "1.0", .hasChecksum = true, .checksum = 7});
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "1.0", "1.0", "7 == 7", "Y", "0"}}));
}

TEST_F(VersionsComparison, AnElementWithoutAFileShowsWhatItHas)
{
    addElement({.version = "1.0", .hasChecksum = true, .checksum = 7});
    addElement({.version = "1.0", .hasChecksum = false, .checksum = 7});
    addElement();
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "1.0", "---", "7 != ---", "", "-"},
                                 {"1", "Element 1", "1.0", "---", "", "", "-"},
                                 {"2", "Element 2", "---", "---", "", "", "-"}}));
}

TEST_F(VersionsComparison, AFileWithoutAVersionShowsDashes)
{
    addFileForId(1, {{"version", nullptr}, {"checksumCrc32", 8}});
    addElement({.version = "1.0", .hasChecksum = true, .checksum = 7});
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "1.0", "---", "7 != 8", "N", "0"}}));
}

TEST_F(VersionsComparison, AnElementWithoutAChecksumDiffersFromAnyFile)
{
    addFileForId(1, {{"version", "1.0"}, {"checksumCrc32", 0}});
    addElement({.version = "1.0"});
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "1.0", "1.0", "--- != 0", "Y", "-"}}));
}

TEST_F(VersionsComparison, AChecksumOfZeroIsAChecksum)
{
    addFileForId(1, {{"version", "1.0"}, {"checksumCrc32", 0}});
    addFileForId(2, {{"version", "1.0"}, {"checksumCrc32", 9}});
    addElement({.id = 1, .version = "1.0", .hasChecksum = true, .checksum = 0});
    addElement({.id = 2, .version = "1.0", .hasChecksum = true, .checksum = 0});
    addElement({.id = 3, .version = "1.0", .hasChecksum = true, .checksum = 0});
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "1.0", "1.0", "0 == 0", "Y", "-"},
                                 {"1", "Element 1", "1.0", "1.0", "0 != 9", "Y", "-"},
                                 {"2", "Element 2", "1.0", "---", "0 != ---", "", "-"}}));
}

TEST_F(VersionsComparison, AVersionThatBeginsWithZeroIsAVersion)
{
    addFileForId(1, {{"version", "0.2"}, {"checksumCrc32", 9}});
    addElement({.version = "0.1"});
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "0.1", "0.2", "--- != 9", "N", "0"}}));
}

TEST_F(VersionsComparison, AFilesUnknownChecksumIsShownAsItIs)
{
    addFileForId(1, {{"version", "1.0"}});
    addElement({.hasChecksum = true, .checksum = 4294967295u});
    addElement();
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "---", "1.0", "4294967295 != 4294967294", "N", "0"},
                                 {"1", "Element 1", "---", "1.0", "--- != 4294967294", "N", "0"}}));
}

TEST_F(VersionsComparison, InvalidAndInactiveElementsAreMarked)
{
    addElement().valid = false;
    addElement().active = false;
    Element& both = addElement();
    both.valid = false;
    both.active = false;
    addElement();
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "---", "---", "", "", "-", "[INVALID]"},
                                 {"1", "Element 1", "---", "---", "", "", "-", "[INACTIVE]"},
                                 {"2", "Element 2", "---", "---", "", "", "-", "[INVALID]"},
                                 {"3", "Element 3", "---", "---", "", "", "-", ""}}));
}

TEST_F(VersionsComparison, AnInactiveFileSystemElementIsNotMarkedAndAnInvalidOneIs)
{
    addFileElement("/a").active = false;
    addFileElement("/b").valid = false;
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "---", "---", "", "", "-", ""},
                                 {"1", "Element 1", "---", "---", "", "", "-", "[INVALID]"}}));
}

TEST_F(VersionsComparison, DisabledElementsAreNumberedToo)
{
    addFileForId(1, {{"version", "1.1"}, {"checksumCrc32", 8}});
    addElement({.version = "1.0"}).disabled = true;
    addElement({.version = "1.0"});
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "1.0", "1.1", "--- != 8", "N", "-"},
                                 {"1", "Element 1", "1.0", "1.1", "--- != 8", "N", "0"}}));
}

TEST_F(VersionsComparison, NewFileSystemElementsFollow)
{
    makeTemplate({{"PRODUCT/NAME", "Board"}});
    addFileForId(1, {{"version", "1.1"}, {"checksumCrc32", 8}, {"sequence", 3}});
    addFile({{"boardType", "T"}, {"targetPath", "/a/b"}, {"version", "2.0"}, {"checksumCrc32", 9}, {"sequence", 4}});
    addElement({.version = "1.0"});
    EXPECT_EQ(rows(), (TableRows{{"0", "Element 0", "1.0", "1.1", "--- != 8", "N", "0", ""},
                                 {"1", "Board, Updatable file (b)", "---", "2.0", "--- != 9", "N", "1", "[INVALID]"}}));
}

}  // namespace
