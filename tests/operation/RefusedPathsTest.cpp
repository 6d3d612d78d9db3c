// Paths that are not written to the flash drive: no archive can leave the drive or run a command on the target.
#include "operation/FlashDriveFixture.h"
#include "support/TempDir.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

// File names that a shell would not take literally. Where one of them runs a command, it makes a file "marker".
const std::vector<std::string> unsafeNames = {"two words.bin",
                                              " leading.bin",
                                              "trailing.bin ",
                                              "tab\tbed.bin",
                                              "line\nfeed.bin",
                                              "return\rcr.bin",
                                              "bell\a.bin",
                                              "escape\x1b[0m.bin",
                                              "delete\x7f.bin",
                                              "one\x01.bin",
                                              "x;touch marker",
                                              "x|touch marker",
                                              "x&touch marker",
                                              "x&&touch marker",
                                              "x\ntouch marker",
                                              "$(touch marker)",
                                              "`touch marker`",
                                              "$HOME.bin",
                                              "${HOME}.bin",
                                              "x;y.bin",
                                              "x|y.bin",
                                              "x&y.bin",
                                              "x$y.bin",
                                              "x`y.bin",
                                              "x(y.bin",
                                              "x)y.bin",
                                              "x<y.bin",
                                              "x>marker",
                                              "x*y.bin",
                                              "x?y.bin",
                                              "x[y.bin",
                                              "x]y.bin",
                                              "x{y.bin",
                                              "x}y.bin",
                                              "x{a,b}.bin",
                                              "x!y.bin",
                                              "#x.bin",
                                              "x#y.bin",
                                              "~x.bin",
                                              "x'y.bin",
                                              "x\"y.bin",
                                              "x\\y.bin",
                                              "x^y.bin",
                                              "[a-z].bin",
                                              "x>>marker",
                                              "x<(touch marker)",
                                              "'$(touch marker)'",
                                              "\"$(touch marker)\"",
                                              "\\$(touch marker)",
                                              "x\vy.bin"};

}  // namespace

class RefusedPaths : public FlashDriveFixture {
protected:
    // As prepareDrive, with a working folder of its own in which a command that is run would leave its marker.
    void prepareDriveAndMarker()
    {
        prepareDrive();
        before = fs::current_path();
        fs::current_path(here.path());
    }

    void TearDown() override
    {
        if (!before.empty()) {
            fs::current_path(before);
        }
    }

    void expectNothingDone(const std::string& what)
    {
        EXPECT_THAT(onDrive(), IsEmpty()) << what;
        EXPECT_THAT(below(here.path()), IsEmpty()) << what;
        EXPECT_THAT(trace(), IsEmpty()) << what;
    }

    TempDir here;
    fs::path before;
};

TEST_F(RefusedPaths, RefusesUnsafeLocations)
{
    prepareDriveAndMarker();

    for (const std::string& name : unsafeNames) {
        EXPECT_FALSE(write("c.bin", name)) << name;

        EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/" + name + ".tmp. Error code: 22\n"));
        expectNothingDone(name);
    }
}

TEST_F(RefusedPaths, RefusesUnsafeFoldersBeforeItMakesThem)
{
    prepareDriveAndMarker();

    for (const std::string& name : unsafeNames) {
        EXPECT_FALSE(write("c.bin", "good/" + name + "/c.bin")) << name;

        EXPECT_THAT(messages,
                    ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/good/" + name + "/c.bin.tmp. Error code: 22\n"));
        expectNothingDone(name);
    }
}

TEST_F(RefusedPaths, RefusesUnsafeSources)
{
    prepareDriveAndMarker();

    for (const std::string& name : unsafeNames) {
        archive->addFile(name, "content");

        EXPECT_FALSE(write(name, "a/c.bin")) << name;

        EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/a/c.bin.tmp. Error code: 22\n")) << name;
        expectNothingDone(name);
    }
}

TEST_F(RefusedPaths, ChangesNoFileOfTheDriveWhenItRefuses)
{
    prepareDriveAndMarker();
    put(drive() / "c.bin", "old");
    archive->addFile("x y.bin", "new");

    EXPECT_FALSE(write("x y.bin", "c.bin"));

    EXPECT_THAT(onDrive(), ElementsAre("c.bin"));
    EXPECT_EQ(readText(drive() / "c.bin"), "old");
}

TEST_F(RefusedPaths, NamesAMissingUnsafeSourceAsMissing)
{
    prepareDriveAndMarker();

    EXPECT_FALSE(write("x;touch marker", "c d.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: File " + archive->path() + "/x;touch marker does not exist.\n"));
    expectNothingDone("missing source");
}

TEST_F(RefusedPaths, RefusesAnUnsafeArchivePath)
{
    prepareDriveAndMarker();
    TempDir parent;
    parent.write("my archive/c.bin", "content");
    ZoNTrellanUpdater::ZoTOptions other = options;
    other.archivePath = (parent.path() / "my archive").string();
    OpenUpdater otherUpdater(other);
    ZoNUpdateArchive::ZoSUpdateFile file;
    file.name = "c.bin";

    EXPECT_FALSE(otherUpdater.getOperation().writeFileSystemElement(file, "c.bin", messages));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 22\n"));
    expectNothingDone("archive path");
}

TEST_F(RefusedPaths, RefusesASourceThatLooksLikeAnOption)
{
    prepareDriveAndMarker();
    fs::current_path(archive->path());
    archive->addFile("-r/c.bin", "content");
    ZoNTrellanUpdater::ZoTOptions other = options;
    other.archivePath = "-r";
    OpenUpdater otherUpdater(other);
    ZoNUpdateArchive::ZoSUpdateFile file;
    file.name = "c.bin";

    EXPECT_FALSE(otherUpdater.getOperation().writeFileSystemElement(file, "c.bin", messages));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 22\n"));
    expectNothingDone("dash");
}

TEST_F(RefusedPaths, TakesADashInsideThePaths)
{
    prepareDriveAndMarker();
    archive->addFile("-r.bin", "content");

    EXPECT_TRUE(write("-r.bin", "-a/-f.bin"));

    EXPECT_THAT(onDrive(), ElementsAre("-a/", "-a/-f.bin"));
}

TEST_F(RefusedPaths, RefusesLocationsThatLeaveTheDrive)
{
    prepareDriveAndMarker();
    const fs::path beside = drive().parent_path();
    const std::vector<std::string> around = below(beside);

    for (const std::string location :
         {"..", "../x.bin", "/../x.bin", "./../x.bin", "a/../../x.bin", "a/b/../../../x.bin", "a/./../../x.bin",
          "a//../../x.bin", "a/../../../../tmp/x.bin", "../../../etc/x.bin", "a/../..", "..//x.bin"}) {
        EXPECT_FALSE(write("c.bin", location)) << location;

        EXPECT_THAT(messages, ElementsAre("ERROR: Invalid target file path: /mnt/cn/cfdrive/" + location + "\n"));
        expectNothingDone(location);
    }
    EXPECT_EQ(below(beside), around);
    EXPECT_FALSE(fs::exists("/mnt/cn/x.bin"));
}

TEST_F(RefusedPaths, RefusesLocationsThatNameNoFile)
{
    prepareDriveAndMarker();
    for (const std::string location : {"", ".", "/", "./", "a/", "a//", "a/.", "a/./", "a/..", "a/b/.."}) {
        EXPECT_FALSE(write("missing.bin", location)) << location;

        EXPECT_THAT(messages, ElementsAre("ERROR: Invalid target file path: /mnt/cn/cfdrive/" + location + "\n"));
        expectNothingDone(location);
    }
}

TEST_F(RefusedPaths, RefusesToLeaveTheDriveBeforeItLooksForTheSource)
{
    prepareDriveAndMarker();

    EXPECT_FALSE(write("missing.bin", "../x y.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: Invalid target file path: /mnt/cn/cfdrive/../x y.bin\n"));
}

TEST_F(RefusedPaths, WritesLocationsThatStayOnTheDrive)
{
    prepareDriveAndMarker();
    fs::create_directories(drive() / "a/b");

    EXPECT_TRUE(write("c.bin", "a/../1.bin"));
    EXPECT_TRUE(write("c.bin", "a/b/../2.bin"));
    EXPECT_TRUE(write("c.bin", "a/b/../../3.bin"));
    EXPECT_TRUE(write("c.bin", "./4.bin"));
    EXPECT_TRUE(write("c.bin", "..5.bin"));
    EXPECT_TRUE(write("c.bin", "6..bin"));
    EXPECT_TRUE(write("c.bin", ".../7.bin"));
    EXPECT_TRUE(write("c.bin", "..a/8.bin"));

    EXPECT_THAT(messages, IsEmpty());
    EXPECT_THAT(onDrive(), ElementsAre(".../", ".../7.bin", "..5.bin", "..a/", "..a/8.bin", "1.bin", "3.bin", "4.bin",
                                       "6..bin", "a/", "a/2.bin", "a/b/"));
}

TEST_F(RefusedPaths, WritesNamesThatAShellTakesLiterally)
{
    prepareDriveAndMarker();

    for (const std::string name : {"a+b.bin", "a,b.bin", "a=b.bin", "a@b.bin", "a%b.bin", "a%s%n.bin", "a:b.bin",
                                   "a_b-c.bin", "GROSS.BIN", "gr\xc3\xbcn.bin"}) {
        archive->addFile(name, "content of " + name);

        EXPECT_TRUE(write(name, name)) << name;

        EXPECT_THAT(messages, IsEmpty()) << name;
        EXPECT_EQ(readText(drive() / name), "content of " + name);
    }
}

TEST_F(RefusedPaths, FailsTheUpdateOfAnElementWithAnUnsafeLocation)
{
    hasFlashDrive = true;
    addFileElement(1, 1, "$(touch marker)/c.bin");
    addFileElement(1, 2, "../d.bin");
    prepare();
    before = fs::current_path();
    fs::current_path(here.path());

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FAILED, FAILED));
    EXPECT_THAT(onDrive(), IsEmpty());
    EXPECT_THAT(below(here.path()), IsEmpty());
}

TEST_F(RefusedPaths, RefusesToClimbFromASymbolicLink)
{
    prepareDriveAndMarker();
    const TempDir outside;
    fs::create_directories(outside.path() / "folder/sub");
    fs::create_symlink(outside.path() / "folder", drive() / "link");
    fs::create_directories(drive() / "real");

    for (const std::string location : {"link/../escaped.bin", "link/sub/../../escaped.bin", "real/../link/../x.bin"}) {
        EXPECT_FALSE(write("c.bin", location)) << location;
        EXPECT_THAT(messages, ElementsAre("ERROR: Invalid target file path: /mnt/cn/cfdrive/" + location + "\n"));
    }

    EXPECT_THAT(below(outside.path()), ElementsAre("folder/", "folder/sub/"));
    EXPECT_THAT(onDrive(), ElementsAre("link/", "real/"));
}

TEST_F(RefusedPaths, RefusesAFolderThatIsALinkOutOfTheDrive)
{
    prepareDriveAndMarker();
    const TempDir outside;
    fs::create_directories(outside.path() / "folder");
    fs::create_symlink(outside.path(), drive() / "link");
    fs::create_symlink("..", drive() / "up");
    fs::create_symlink("link/folder", drive() / "chain");
    fs::create_directory(drive() / "real");
    fs::create_symlink(outside.path(), drive() / "real/inner");
    fs::create_symlink("real", drive() / "within");
    const std::vector<std::string> around = below(drive().parent_path());

    const std::vector<std::string> locations = {"link/c.bin",
                                                "link/folder/c.bin",
                                                "link/new/c.bin",
                                                "./link//c.bin",
                                                "new/../link/c.bin",
                                                "up/c.bin",
                                                "up/cfdrive/c.bin",
                                                "chain/c.bin",
                                                "real/inner/c.bin",
                                                "within/inner/new/c.bin",
                                                "link/new/" + std::string(300, 'x') + "/c.bin"};
    for (const std::string& location : locations) {
        EXPECT_FALSE(write("c.bin", location)) << location;
        EXPECT_THAT(messages,
                    ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/" + location + ".tmp. Error code: 18\n"));
        EXPECT_THAT(trace(), IsEmpty());
    }

    EXPECT_THAT(below(outside.path()), ElementsAre("folder/"));
    EXPECT_EQ(below(drive().parent_path()), around);
}

TEST_F(RefusedPaths, WritesThroughALinkThatStaysOnTheDrive)
{
    prepareDriveAndMarker();
    fs::create_directories(drive() / "real/sub");
    fs::create_symlink("real/sub", drive() / "relative");
    fs::create_symlink("/mnt/cn/cfdrive/real", drive() / "absolute");
    fs::create_symlink("..", drive() / "real/up");

    EXPECT_TRUE(write("c.bin", "relative/1.bin"));
    EXPECT_TRUE(write("c.bin", "absolute/new/2.bin"));
    EXPECT_TRUE(write("c.bin", "absolute/up/3.bin"));

    EXPECT_TRUE(fs::is_regular_file(drive() / "real/sub/1.bin"));
    EXPECT_TRUE(fs::is_regular_file(drive() / "real/new/2.bin"));
    EXPECT_TRUE(fs::is_regular_file(drive() / "3.bin"));
}

TEST_F(RefusedPaths, MakesNothingBehindALinkThatLeadsToNothing)
{
    prepareDriveAndMarker();
    const TempDir outside;
    fs::create_symlink(outside.path() / "new", drive() / "link");

    EXPECT_FALSE(write("c.bin", "link/c.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/link/c.bin.tmp. Error code: 256\n"));
    EXPECT_THAT(below(outside.path()), IsEmpty());
    EXPECT_THAT(onDrive(), ElementsAre("link"));
}

TEST_F(RefusedPaths, RefusesToClimbFromALinkBehindAFolderThatIsNotThere)
{
    prepareDriveAndMarker();
    const TempDir outside;
    fs::create_directories(outside.path() / "folder");
    fs::create_symlink(outside.path() / "folder", drive() / "link");

    EXPECT_FALSE(write("c.bin", "new/../link/../c.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: Invalid target file path: /mnt/cn/cfdrive/new/../link/../c.bin\n"));
    EXPECT_THAT(below(outside.path()), ElementsAre("folder/"));
    EXPECT_THAT(onDrive(), ElementsAre("link/"));
}

TEST_F(RefusedPaths, RefusesNamesWithANulThatWouldBeCut)
{
    prepareDriveAndMarker();
    ZoNUpdateArchive::ZoSUpdateFile update;
    update.name = "c.bin";
    const std::string location("c\0d.bin", 7);
    EXPECT_FALSE(operation().writeFileSystemElement(update, ZoCString(location.data(), location.size()), messages));
    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c. Error code: 22\n"));

    update.name = ZoCString("c.bin\0x", 7);
    EXPECT_FALSE(operation().writeFileSystemElement(update, "e.bin", messages));
    EXPECT_THAT(messages, ElementsAre("ERROR: File " + archive->path() + "/c.bin does not exist.\n"));
    EXPECT_THAT(onDrive(), IsEmpty());
}
