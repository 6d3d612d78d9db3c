// The targets that a command line names.
#include <gtest/gtest.h>

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
