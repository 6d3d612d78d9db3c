// Updates from an archive whose path is relative.
#include <filesystem>

#include "operation/OperationFixture.h"
#include "support/Namespaces.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

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

class ArchivePath : public OperationFixture {
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

TEST_F(ArchivePath, RefusesARelativeArchivePathQuietly)
{
    addElement(1, 1);
    prepareRelative(fileEntry("b1e1.bin", {{"boardType", "T1"}}));

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "failure 0", "progress 100", "end of phases"));
    EXPECT_THAT(journal->text(), Not(HasSubstr(relativeName())));
    EXPECT_THAT(calls("update2"), IsEmpty());
    EXPECT_THAT(states(), ElementsAre(FAILED));
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ArchivePath, NamesTheRelativePathInVerboseMode)
{
    options.verbose = true;
    addElement(1, 1);
    prepareRelative(fileEntry("b1e1.bin", {{"boardType", "T1"}}));

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->fragments(),
                Contains("ERROR: Given path is not absolute: '" + relativeName() + "/b1e1.bin'\n"));
    EXPECT_THAT(states(), ElementsAre(FAILED));
}

TEST_F(ArchivePath, TakesAPathThatBeginsWithADotForRelative)
{
    options.verbose = true;
    addElement(1, 1);
    prepareRelative(fileEntry("b1e1.bin", {{"boardType", "T1"}}), "./");

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->fragments(),
                Contains("ERROR: Given path is not absolute: './" + relativeName() + "/b1e1.bin'\n"));
    EXPECT_THAT(calls("update2"), IsEmpty());
    EXPECT_THAT(states(), ElementsAre(FAILED));
}

TEST_F(ArchivePath, WritesFilesOfTheFlashDriveAlsoFromARelativeArchivePath)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "c.bin");
    prepareRelative(fileEntry("b1f1.bin", {{"boardType", "T1"}, {"targetPath", "c.bin"}}));

    EXPECT_TRUE(update());

    EXPECT_TRUE(std::filesystem::exists(drive() / "c.bin"));
    EXPECT_THAT(states(), ElementsAre(FINISHED));
}
