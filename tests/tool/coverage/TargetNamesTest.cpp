// The targets that a command line names.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>

#include "support/TempDir.h"
#include "support/TextFile.h"
#include "tool/coverage/TargetNames.h"

using TrellanTool::NamedTarget;
using TrellanTool::targetsNamed;

namespace {

using Names = std::vector<std::string>;

Names namesOf(const std::vector<std::string>& words)
{
    Names names;
    for (const NamedTarget& target : targetsNamed(words)) {
        names.push_back(target.name + (target.error ? ": " + *target.error : ""));
    }
    return names;
}

}  // namespace

TEST(TargetNames, StayInTheOrderGiven)
{
    EXPECT_EQ(namesOf({"b.json", "nowhere/a.txt", "b.json"}), (Names{"b.json", "nowhere/a.txt", "b.json"}));
}

TEST(TargetNames, OfAFolderAreThoseOfItsJsonFilesByName)
{
    const TempDir folder;
    for (const char* const name : {"b.json", "a.json", "B.json", "a.json.lock", "notes.txt", "json"}) {
        writeText(folder.path() / name, "");
    }
    std::filesystem::create_directory(folder.path() / "folder.json");
    std::filesystem::create_symlink("nowhere", folder.path() / "link.json");
    const std::string path = folder.path().string();
    EXPECT_EQ(namesOf({path, "z.json"}),
              (Names{path + "/B.json", path + "/a.json", path + "/b.json", path + "/link.json", "z.json"}));
    EXPECT_EQ(namesOf({path + "/"}),
              (Names{path + "/B.json", path + "/a.json", path + "/b.json", path + "/link.json"}));
}

TEST(TargetNames, TellOfAFolderWithoutTargets)
{
    const TempDir folder;
    const std::string path = folder.path().string();
    EXPECT_EQ(namesOf({path}), (Names{path + ": the folder holds no .json file"}));
}

TEST(TargetNames, TellOfAnEmptyPath)
{
    EXPECT_EQ(namesOf({"", "a.json"}), (Names{": the path is empty", "a.json"}));
}

TEST(TargetNames, TellOfAFolderThatCannotBeRead)
{
    const TempDir folder;
    writeText(folder.path() / "a.json", "");
    const std::string path = folder.path().string();
    rlimit usual = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit none = {0, usual.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const Names names = namesOf({path});
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);
    EXPECT_EQ(names, (Names{path + ": the folder cannot be read: Too many open files"}));
}
