// The check of the names of update files.
#include <filesystem>

#include "Inspecting.h"

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class NameRules : public Inspecting {
protected:
    // An element with a file of this name, which is not made.
    void applyNamed(const std::string& name)
    {
        boards = {ioBoard({installed(1)})};
        entries = {ioEntry(name, 1)};
        missingFiles = {name};
        ASSERT_EQ(apply(), 0u);
    }

    // The same for a file on the flash drive.
    void applyFlashFile(const std::string& name)
    {
        boards = {hcnBoard({fileElement(1, {{"LOCATION", "site.cfg"}})})};
        entries = {fileEntry(name, {{"targetPath", "site.cfg"}, {"checksumCrc32", 0x57F4675Du}})};
        missingFiles = {name};
        ASSERT_EQ(apply(), 0u);
    }

    // What is found, without that the file is missing.
    Names checkName()
    {
        Names found = check();
        std::erase(found, "error missing-file /files/0/name");
        return found;
    }

    // The rules of the findings that there are, but for files that no entry names.
    Names rulesFound() const
    {
        Names rules;
        for (unsigned i = 0; i < inspector->getFindingCount(); ++i) {
            if (inspector->getFinding(i).rule != "unlisted-file") {
                rules.push_back(inspector->getFinding(i).rule);
            }
        }
        return rules;
    }
};

}  // namespace

TEST_F(NameRules, RefuseANameThatLeavesTheArchivesFolder)
{
    for (const std::string name : {"../x.bin", "a/../../x.bin", "..", "./../x.bin", "a/b/../../../x.bin"}) {
        applyNamed(name);
        Names found = checkName();
        std::erase(found, "error not-a-file /files/0/name");  // a folder
        EXPECT_THAT(found, ElementsAre("error outside-archive /files/0/name")) << name;
    }
    EXPECT_EQ(messagesFound().at(0),
              "the name leads out of the archive's folder: put the file into the folder and name it there");
}

TEST_F(NameRules, TakeANameThatStaysInTheArchivesFolder)
{
    for (const std::string name : {"a/../x.bin", "/x.bin", "..x/y..", "a/./x.bin"}) {
        applyNamed(name);
        EXPECT_THAT(checkName(), IsEmpty()) << name;
    }
}

TEST_F(NameRules, WarnOfALinkThatLeavesTheArchivesFolder)
{
    const TempDir elsewhere;
    elsewhere.write("real.bin", "content");
    applyNamed("sub/x.bin");
    fs::create_directory_symlink(elsewhere.path(), fs::path(archive->path()) / "sub");
    fs::create_symlink("real.bin", elsewhere.path() / "x.bin");
    EXPECT_THAT(check(), ElementsAre("warning outside-archive /files/0/name", "error checksum /files/0/checksumCrc32"));
    EXPECT_EQ(messagesFound().at(0), "a link leads out of the archive's folder, to \"" +
                                         (elsewhere.path() / "real.bin").string() +
                                         "\": put the file itself into the folder");
}

TEST_F(NameRules, WarnOfADescriptionToWhichALinkLeadsOutOfTheArchivesFolder)
{
    const TempDir elsewhere;
    applyNamed("x.bin");
    archive->addFile("x.bin", "content");
    const fs::path description = fs::path(archive->path()) / "archive.json";
    fs::copy(description, elsewhere.path() / "real.json");
    fs::remove(description);
    fs::create_symlink(elsewhere.path() / "real.json", description);
    inspector->checkArchive(nullptr, nullptr);
    ASSERT_EQ(rulesFound(), (Names{"checksum", "outside-archive"}));
    EXPECT_EQ(inspector->getFinding(1).severity, ZoNTrellanInspector::ZoTSeverity::WARNING);
    EXPECT_FALSE(inspector->getFinding(1).isInDescription);
    EXPECT_EQ(messagesFound().at(1), "a link leads out of the archive's folder to the description, to \"" +
                                         (elsewhere.path() / "real.json").string() +
                                         "\": put the description itself into the folder");
}

TEST_F(NameRules, TakeADescriptionToWhichALinkLeadsWithinTheArchivesFolder)
{
    applyNamed("x.bin");
    archive->addFile("x.bin", "content");
    const fs::path folder = archive->path();
    fs::copy(folder / "archive.json", folder / "real.json");
    fs::remove(folder / "archive.json");
    fs::create_symlink("real.json", folder / "archive.json");
    inspector->checkArchive(nullptr, nullptr);
    EXPECT_EQ(rulesFound(), Names{"checksum"});
}

TEST_F(NameRules, TakeADescriptionThatIsNamedOutsideOfTheArchivesFolder)
{
    const TempDir parent;
    parent.write("elsewhere/real.json", description({ioEntry("x.bin", 1)}).dump());
    parent.write("archive/x.bin", "content");
    fs::create_symlink("elsewhere/real.json", parent.path() / "link.json");
    options.archivePath = (parent.path() / "archive").string();
    options.descriptionFileName = "../link.json";
    boards = {ioBoard({installed(1)})};
    ASSERT_EQ(apply(), 0u);
    inspector->checkArchive(nullptr, nullptr);
    EXPECT_EQ(rulesFound(), Names{"checksum"});
}

TEST_F(NameRules, TakeALinkWithinTheArchivesFolder)
{
    applyNamed("sub/x.bin");
    archive->addFile("real/x.bin", "content");
    fs::create_directory_symlink("real", fs::path(archive->path()) / "sub");
    EXPECT_THAT(check(), ElementsAre("error checksum /files/0/checksumCrc32"));
}

TEST_F(NameRules, TakeAnArchivesFolderThatIsALinkItself)
{
    const TempDir parent;
    parent.write("real/archive.json", description({ioEntry("x.bin", 1)}).dump());
    parent.write("real/x.bin", "content");
    fs::create_directory_symlink("real", parent.path() / "archive");
    options.archivePath = (parent.path() / "archive").string();
    boards = {ioBoard({installed(1)})};
    ASSERT_EQ(apply(), 0u);
    EXPECT_THAT(check(), ElementsAre("error checksum /files/0/checksumCrc32"));
}

TEST_F(NameRules, WarnOfControlCharacters)
{
    for (const auto& [name, character] : {std::pair("a\nb.bin", "U+000A"), std::pair("a\x7F.bin", "U+007F"),
                                          std::pair("a\xC2\x9B.bin", "U+009B"), std::pair("\x1B[2J.bin", "U+001B")}) {
        applyNamed(name);
        EXPECT_THAT(checkName(), ElementsAre("warning control-character /files/0/name")) << character;
        EXPECT_EQ(messagesFound().at(0),
                  std::string("the name has the control character ") + character + ": leave it out");
    }
}

TEST_F(NameRules, TakeOtherCharacters)
{
    for (const std::string name : {"a b.bin", "\xC3\xA4.bin", "\xC2\xA0.bin", "$(x).bin"}) {
        applyNamed(name);
        EXPECT_THAT(checkName(), IsEmpty()) << name;
    }
}

TEST_F(NameRules, TakeANameWithANulForAMissingFile)
{
    applyNamed(std::string("a\0b", 3));
    EXPECT_THAT(check(), ElementsAre("warning control-character /files/0/name", "error missing-file /files/0/name"));
    EXPECT_EQ(inspector->getFinding(0).name, std::string("a\0b", 3));
}

TEST_F(NameRules, RefuseForTheFlashDriveWhatAShellDoesNotTakeLiterally)
{
    for (const auto& [name, what] :
         {std::pair("a b.cfg", "a blank"), std::pair("a$b.cfg", "the character '$'"),
          std::pair("'a'.cfg", "the character '''"), std::pair("~/x.cfg", "the character '~'")}) {
        applyFlashFile(name);
        EXPECT_THAT(checkName(), ElementsAre("error shell-character /files/0/name")) << name;
        EXPECT_EQ(messagesFound().at(0),
                  std::string("the name of a file for the flash drive must not have ") + what + ": choose another one");
    }
}

TEST_F(NameRules, RefuseAControlCharacterForTheFlashDriveAndWarnOfItToo)
{
    applyFlashFile("a\tb.cfg");
    EXPECT_THAT(checkName(),
                ElementsAre("error shell-character /files/0/name", "warning control-character /files/0/name"));
}

TEST_F(NameRules, RefuseAFolderOfTheArchiveThatLooksLikeAnOption)
{
    const TempDir parent;
    parent.write(
        "-a/archive.json",
        description({fileEntry("site.cfg", {{"targetPath", "site.cfg"}, {"checksumCrc32", 0xCBF43926u}})}).dump());
    parent.write("-a/site.cfg", "123456789");
    boards = {hcnBoard({fileElement(1, {{"LOCATION", "site.cfg"}})})};
    options.archivePath = "-a";
    fs::current_path(parent.path());
    ASSERT_EQ(apply(), 0u);
    EXPECT_THAT(check(), ElementsAre("error shell-character /files/0/name"));
    EXPECT_EQ(messagesFound().at(0),
              "the path \"-a/site.cfg\" of a file for the flash drive must not begin with '-': "
              "name the archive's folder by its absolute path");
    fs::current_path("/");
}

TEST_F(NameRules, RefuseAFolderOfTheArchiveThatAShellDoesNotTakeLiterally)
{
    const TempDir parent;
    options.archivePath = (parent.path() / "my archive").string();
    fs::create_directory(options.archivePath);
    const std::string folder = options.archivePath;
    parent.write("my archive/archive.json",
                 description({fileEntry("site.cfg", {{"targetPath", "site.cfg"}, {"checksumCrc32", 0xCBF43926u}}),
                              fileEntry("hcn.bin", {{"id", 1}, {"checksumCrc32", 0xCBF43926u}})})
                     .dump());
    parent.write("my archive/site.cfg", "123456789");
    parent.write("my archive/hcn.bin", "123456789");
    boards = {hcnBoard({installed(1)})};
    ASSERT_EQ(apply(), 0u);

    EXPECT_THAT(check(), ElementsAre("error shell-character /files/0/name"));
    EXPECT_EQ(messagesFound().at(0), "the path \"" + folder +
                                         "/site.cfg\" of a file for the flash drive must not have a blank: "
                                         "move the archive to another folder");
}
