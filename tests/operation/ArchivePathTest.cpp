// Updates from an archive whose path is relative.
#include <filesystem>

#include "operation/OperationTest.h"
#include "support/Namespaces.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

// Changes the working folder for the time of a scope.
class WorkingFolder {
public:
    explicit WorkingFolder(const std::filesystem::path& folder) : before(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder);
    }
    ~WorkingFolder() { std::filesystem::current_path(before); }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

private:
    std::filesystem::path before;
};

}  // namespace

class ArchivePathTest : public OperationTest {
protected:
    // Prepares an update from an archive with this file, named relative to the working folder: `prefix` and its name.
    void prepareRelative(const Json& entry, const std::string& prefix = "")
    {
        relative.emplace(description({entry}));
        relative->addFile(entry.at("name"), "content");
        here.emplace(std::filesystem::path(relative->path()).parent_path());
        options.archivePath = prefix + relativeName();
        prepare();
    }

    std::string relativeName() const { return std::filesystem::path(relative->path()).filename().string(); }

    std::optional<TestArchive> relative;
    std::optional<WorkingFolder> here;
};

TEST_F(ArchivePathTest, RefusesARelativeArchivePathQuietly)
{
    addElement(1, 1);
    prepareRelative(fileEntry("b1e1.bin", {{"boardType", "T1"}}));

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        [ERROR]\n"
              "<failure 0>"
              "<progress 100>"
              "[ERROR]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "\n    Update failed!\n");
    EXPECT_THAT(calls("update2"), IsEmpty());
    EXPECT_THAT(states(), ElementsAre(3u));
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ArchivePathTest, NamesTheRelativePathInVerboseMode)
{
    options.verbose = true;
    addElement(1, 1);
    prepareRelative(fileEntry("b1e1.bin", {{"boardType", "T1"}}));

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        "
              "ERROR: Given path is not absolute: '" +
                  relativeName() +
                  "/b1e1.bin'\n"
                  "[ERROR]\n"
                  "<failure 0>"
                  "<progress 100>"
                  "[ERROR]\n"
                  "<phase 4294967295>"
                  "\nResults:\n"
                  "    ERROR: Board 1, SN 1, Element 1:\n"
                  "\n    Update failed!\n");
}

TEST_F(ArchivePathTest, TakesAPathThatBeginsWithADotForRelative)
{
    options.verbose = true;
    addElement(1, 1);
    prepareRelative(fileEntry("b1e1.bin", {{"boardType", "T1"}}), "./");

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->fragments(),
                Contains("ERROR: Given path is not absolute: './" + relativeName() + "/b1e1.bin'\n"));
    EXPECT_THAT(calls("update2"), IsEmpty());
    EXPECT_THAT(states(), ElementsAre(3u));
}

TEST_F(ArchivePathTest, WritesFilesOfTheFlashDriveAlsoFromARelativeArchivePath)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "c.bin");
    prepareRelative(fileEntry("b1f1.bin", {{"boardType", "T1"}, {"targetPath", "c.bin"}}));

    EXPECT_TRUE(update());

    EXPECT_TRUE(std::filesystem::exists(drive() / "c.bin"));
    EXPECT_EQ(journal->text(),
              "\nUpdating:\n"
              "        Board 1, SN 1, File 1                           \n"
              "[OK]\n"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
}
