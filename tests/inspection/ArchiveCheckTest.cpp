// The check of a whole archive as a host asks for it: what it returns, and that it leaves the updater as it is.
#include <numeric>
#include <stdexcept>

#include "Inspecting.h"

using testing::ElementsAre;
using testing::UnorderedElementsAre;
using ZoNTrellanInspector::ZoTDescription;
using ZoNTrellanInspector::ZoTDescriptionObject;

namespace {

class ArchiveCheck : public Inspecting {
protected:
    ZoTDescription checkArchive() { return inspector->checkArchive(nullptr, nullptr); }

    Names rulesFound() const
    {
        Names rules;
        for (unsigned i = 0; i < inspector->getFindingCount(); ++i) {
            rules.push_back(inspector->getFinding(i).rule);
        }
        return rules;
    }

    Names membersOf(ZoTDescriptionObject object) const
    {
        Names names;
        for (unsigned i = 0; i < inspector->getMemberCount(object); ++i) {
            names.push_back(inspector->getMember(object, i));
        }
        return names;
    }
};

}  // namespace

TEST_F(ArchiveCheck, LooksAtEntriesThatNoElementUses)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1), ioEntry("nobodys.bin", 7)};
    missingFiles = {"nobodys.bin"};
    contents["one.bin"] = "123456789";
    entries[0]["checksumCrc32"] = 3421780262;
    ASSERT_EQ(apply(), 0u);
    EXPECT_EQ(checkArchive(), ZoTDescription::READ);
    EXPECT_THAT(rulesFound(), ElementsAre("missing-file"));
    EXPECT_EQ(inspector->getFinding(0).entry, 1);
}

TEST_F(ArchiveCheck, TellsTheBeginningOfLongNamesPathsAndTypes)
{
    const std::string begins(255, 'a');
    const std::string whole = begins + "\u00e4" + std::string(100, 'a');  // a character of two bytes would be cut apart
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    Json entry = {{"name", whole}, {"sequence", 1}, {"checksumCrc32", 1}, {"boardType", whole}, {"targetPath", whole}};
    Json escaping = entry;
    escaping["targetPath"] = "../" + whole;
    Json unclear = entry;
    unclear.erase("targetPath");
    unclear.erase("boardType");
    unclear.update({{"id", 1}, {"boards", {{{"boardType", whole}}, {{"boardType", {whole, "B"}}}}}});
    const Json info = {{"formatVersion", "1.0"}, {"archiveVersion", "1.0"}, {"productName", "P"}, {"archiveName", "N"}};
    archive->addFile("archive.json",
                     Json({{"info", info}, {"files", {entry, entry, escaping, unclear, unclear}}}).dump());
    EXPECT_EQ(checkArchive(), ZoTDescription::READ);
    std::map<std::string, std::string> messageOf;
    for (unsigned i = 0; i < inspector->getFindingCount(); ++i) {
        const ZoNTrellanInspector::ZoTFinding& finding = inspector->getFinding(i);
        messageOf[finding.rule] = finding.message;
        if (finding.entry >= 0) {
            EXPECT_EQ(finding.name, begins + "...") << finding.rule;
        }
    }
    EXPECT_EQ(messageOf["path-collision"], "the path \"" + begins + "...\" is written by files[0] \"" + begins +
                                               "...\" too on boards of type \"" + begins +
                                               "...\": choose another path");
    EXPECT_EQ(messageOf["path-escape"], "the path \"../" + std::string(253, 'a') +
                                            "...\" may lead out of the flash drive: state it without \"..\"");
    EXPECT_EQ(messageOf["unreachable-board"],
              "the board type \"" + begins +
                  "...\" stands in a board object before it, which decides: put both into one, or into two entries");
}

TEST_F(ArchiveCheck, LeavesWhatTheUpdaterHasReadAsItIs)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    archive->addFile("archive.json", "{}");
    EXPECT_EQ(checkArchive(), ZoTDescription::READ);
    EXPECT_THAT(rulesFound(), ElementsAre("structure", "structure", "unlisted-file"));
    EXPECT_EQ(inspector->getFileCount(), 1u);
    EXPECT_EQ(inspector->getFile(0).name, "one.bin");
    EXPECT_THAT(states(), ElementsAre("update"));
}

TEST_F(ArchiveCheck, LooksAtTheFilesOfRefusedEntriesHoweverManyThereAre)
{
    boards = {ioBoard({installed(1)})};
    ASSERT_EQ(apply(), 0u);
    constexpr int count = 600;
    for (int i = 0; i < count; ++i) {
        Json entry = ioEntry(std::to_string(i) + ".bin", 1);
        entry.erase("sequence");
        entries.push_back(entry);
    }
    archive->addFile("archive.json", description(entries).dump());
    archive->addFile("300.bin", "content");
    EXPECT_EQ(checkArchive(), ZoTDescription::READ);
    std::vector<std::int32_t> refused, missing;
    for (unsigned i = 0; i < inspector->getFindingCount(); ++i) {
        const ZoNTrellanInspector::ZoTFinding& finding = inspector->getFinding(i);
        if (finding.rule == "structure") {
            refused.push_back(finding.entry);
        } else if (finding.rule == "missing-file") {
            missing.push_back(finding.entry);
            EXPECT_EQ(finding.name, std::to_string(finding.entry) + ".bin");
        }
    }
    std::vector<std::int32_t> all(count);
    std::iota(all.begin(), all.end(), 0);
    EXPECT_EQ(refused, all);
    all.erase(all.begin() + 300);
    EXPECT_EQ(missing, all);
}

TEST_F(ArchiveCheck, TellsADescriptionThatIsNoJsonFromOneThatIsNotThere)
{
    boards = {ioBoard({installed(1)})};
    ASSERT_EQ(apply(), 0u);
    archive->addFile("archive.json", "{");
    EXPECT_EQ(checkArchive(), ZoTDescription::NO_JSON);
    EXPECT_THAT(rulesFound(), ElementsAre("syntax"));
    EXPECT_FALSE(inspector->getFinding(0).isInDescription);

    archive.reset();
    EXPECT_EQ(checkArchive(), ZoTDescription::NOT_OPENED);
}

TEST_F(ArchiveCheck, TellsItsProgressUpToTheEnd)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    contents["one.bin"] = "123456789";
    ASSERT_EQ(apply(), 0u);
    std::uint64_t last = 0;
    inspector->checkArchive(
        [](void* context, std::uint64_t read, std::uint64_t all) {
            EXPECT_EQ(all, 9u);
            *static_cast<std::uint64_t*>(context) = read;
        },
        &last);
    EXPECT_EQ(last, 9u);
}

TEST_F(ArchiveCheck, TakesForAnExampleTheValueThatTheDescriptionNamesFirst)
{
    entries = {ioEntry("nine.bin", 9, {{"boardVariant", "Z"}}), ioEntry("one.bin", 1, {{"boardVariant", {"A", "Z"}}}),
               ioEntry("all.bin", 1, {{"boardVariant", {"A", "Z", "Q"}}})};
    ASSERT_EQ(apply(ZoNTrellanUpdater::PRINT_ARCHIVE), 0u);
    checkArchive();
    std::map<std::string, std::string> examples;
    for (unsigned i = 0; i < inspector->getFindingCount(); ++i) {
        const auto finding = inspector->getFinding(i);
        examples[finding.rule] = finding.hasExample ? finding.example.boardVariant : "none";
    }
    EXPECT_EQ(examples.at("overlap"), "Z");
}

TEST_F(ArchiveCheck, NamesTheMembersThatTheFormatHas)
{
    ASSERT_EQ(apply(ZoNTrellanUpdater::PRINT_ARCHIVE), 0u);
    EXPECT_THAT(membersOf(ZoTDescriptionObject::WHOLE), ElementsAre("info", "files"));
    EXPECT_THAT(membersOf(ZoTDescriptionObject::INFO),
                ElementsAre("formatVersion", "archiveVersion", "productName", "archiveVariant", "archiveName"));
    EXPECT_THAT(membersOf(ZoTDescriptionObject::BOARD),
                UnorderedElementsAre("boardType", "boardVariant", "boardId", "id", "targetPath", "hwCompatibilityId",
                                     "swCompatibilityId"));
    EXPECT_THAT(membersOf(ZoTDescriptionObject::ENTRY),
                UnorderedElementsAre("name", "sequence", "boards", "featureLevel", "version", "checksumCrc32", "mode",
                                     "boardType", "boardVariant", "boardId", "id", "targetPath", "hwCompatibilityId",
                                     "swCompatibilityId"));
    EXPECT_THROW(inspector->getMember(ZoTDescriptionObject::WHOLE, 2), std::out_of_range);
    EXPECT_THROW(inspector->getMemberCount(static_cast<ZoTDescriptionObject>(4)), std::out_of_range);
}
