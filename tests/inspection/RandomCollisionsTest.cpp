// The check of colliding paths, held against trying every board of a small world.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "allocations/Allocations.h"
#include "assignment/ZoCUpdateAssignment.h"
#include "inspection/Check.h"
#include "inspection/Rules.h"
#include "support/MessageCapture.h"
#include "support/OpenUpdater.h"
#include "support/TestArchive.h"
#include "support/UpdaterOptions.h"

using nlohmann::ordered_json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInspection::Check;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

constexpr unsigned seed = 20240611;

// Makes entries of few types, values and paths, so that many collide and many do not.
class EntryMaker {
public:
    ordered_json make()
    {
        ordered_json entry = object();
        if (oneIn(3)) {
            entry.erase("boardType");
            entry["boards"] = ordered_json::array();
            for (unsigned count = 1 + below(3); count != 0; --count) {
                entry["boards"].push_back(object());
            }
            if (oneIn(2)) {
                entry.erase("targetPath");
            }
        } else {
            entry["targetPath"] = path();
        }
        for (auto& board : entry.value("boards", ordered_json::array())) {
            if (!entry.contains("targetPath") && !board.contains("targetPath")) {
                entry["targetPath"] = path();
            }
        }
        return entry;
    }

private:
    unsigned below(unsigned end) { return std::uniform_int_distribution<unsigned>(0, end - 1)(random); }
    bool oneIn(unsigned count) { return below(count) == 0; }

    std::string path()
    {
        static const std::vector<std::string> paths{"a", "./a", "a.tmp", "/b", "b"};
        return paths[below(5)];
    }

    ordered_json choice(const std::vector<ordered_json>& values)
    {
        if (oneIn(2)) {
            return values[below(static_cast<unsigned>(values.size()))];
        }
        ordered_json list = ordered_json::array();
        for (unsigned count = 1 + below(2); count != 0; --count) {
            list.push_back(values[below(static_cast<unsigned>(values.size()))]);
        }
        return list;
    }

    ordered_json object()
    {
        ordered_json made = {{"boardType", choice({"T", "U", "V"})}};
        if (oneIn(2)) {
            made["boardVariant"] = choice({"red", nullptr, ""});
        }
        for (const char* const key : {"boardId", "hwCompatibilityId", "swCompatibilityId"}) {
            if (oneIn(3)) {
                made[key] = choice({0, 1, 4294967296u});
            }
        }
        if (oneIn(2)) {
            made["targetPath"] = path();
        }
        return made;
    }

    std::mt19937 random{seed};
};

// Every board that there can be, as an element that takes any file for the flash drive.
std::vector<ZoSUpdateElement> allBoards()
{
    std::vector<ZoSUpdateElement> boards;
    for (const char* const type : {"T", "U", "V"}) {
        for (const char* const variant : {"", "red"}) {
            for (unsigned ids = 0; ids < 8; ++ids) {
                ZoSUpdateElement& board = boards.emplace_back();
                board.boardType = type;
                board.variant = variant;
                board.productId = ids & 1;
                board.hwCompatibilityId = ids >> 1 & 1;
                board.swCompatibilityId = ids >> 2;
                board.isFileSystemElement = true;
                board.location = "*";
            }
        }
    }
    return boards;
}

// The file that the entry writes on the board; empty when it does not fit it.
std::string writtenOn(const ZoSUpdateElement& board, const ZoSUpdateFile& file)
{
    static const std::map<std::string, std::string> files{
        {"a", "a"}, {"./a", "a"}, {"a.tmp", "a.tmp"}, {"/b", "b"}, {"b", "b"}};
    std::string path;
    return ZoCUpdateAssignment::matches(board, file, path) ? files.at(path) : "";
}

bool collideOnSomeBoard(const std::vector<std::string>& first, const std::vector<std::string>& second)
{
    for (std::size_t i = 0; i < first.size(); ++i) {
        const std::string& a = first[i];
        const std::string& b = second[i];
        if (!a.empty() && !b.empty() && (a == b || a + ".tmp" == b || b + ".tmp" == a)) {
            return true;
        }
    }
    return false;
}

// The position in the message's "files[3]".
std::int32_t entryNamedIn(const std::string& message)
{
    const std::string before = "files[";
    return std::stoi(message.substr(message.find(before) + before.size()));
}

// An updater that has read an archive of these entries.
class ReadArchive {
public:
    explicit ReadArchive(const std::vector<ordered_json>& stated)
    {
        std::vector<ordered_json> entries;
        for (std::size_t i = 0; i < stated.size(); ++i) {
            entries.push_back(fileEntry("file" + std::to_string(i), stated[i]));
            if (!stated[i].contains("targetPath")) {
                entries.back().erase("id");
            }
        }
        const TestArchive archive(description(entries));
        updater = std::make_unique<OpenUpdater>(optionsFor(ZoNTrellanUpdater::PRINT_ARCHIVE, archive.path()));
        const MessageCapture quiet(*updater);
        EXPECT_EQ(updater->apply(), 0u) << quiet.text();
    }

    ZoCUpdateArchive& archive() { return updater->getArchive(); }
    const std::vector<ZoSUpdateFile>& files() { return archive().getUpdateFileList(); }

    Check::Files all()
    {
        Check::Files files;
        for (const ZoSUpdateFile& file : this->files()) {
            files.push_back(&file);
        }
        return files;
    }

private:
    std::unique_ptr<OpenUpdater> updater;
};

}  // namespace

TEST(RandomCollisions, AreFoundExactlyWhereTryingEveryBoardFindsThem)
{
    EntryMaker maker;
    std::vector<ordered_json> entries;
    for (int i = 0; i < 300; ++i) {
        entries.push_back(maker.make());
    }
    ReadArchive read(entries);
    const auto boards = allBoards();
    std::vector<std::vector<std::string>> written;
    for (const ZoSUpdateFile& file : read.files()) {
        auto& ofFile = written.emplace_back();
        for (const ZoSUpdateElement& board : boards) {
            ofFile.push_back(writtenOn(board, file));
        }
    }
    unsigned collisions = 0;
    unsigned pairs = 0;
    std::map<std::int32_t, std::int32_t> later;  // entries that collide with one before them, and the first such
    for (std::size_t i = 0; i < entries.size(); ++i) {
        for (std::size_t j = i + 1; j < entries.size(); ++j) {
            Check check(read.archive(), {&read.files()[i], &read.files()[j]});
            checkPathCollisions(check);
            const bool collide = collideOnSomeBoard(written[i], written[j]);
            ASSERT_EQ((check.takeFindings().size() != 0), collide) << entries[i] << "\n" << entries[j];
            ++pairs;
            if (collide) {
                ++collisions;
                later.try_emplace(static_cast<std::int32_t>(j), static_cast<std::int32_t>(i));
            }
        }
    }
    EXPECT_EQ(pairs, 44850u);
    EXPECT_GT(collisions, 1000u);
    EXPECT_LT(collisions, 10000u);

    Check all(read.archive(), read.all());
    checkPathCollisions(all);
    std::map<std::int32_t, std::int32_t> found;
    const ZoNUpdateBase::FindingList findings = all.takeFindings();
    ZoNTrellanInspector::ZoTFinding finding;
    for (std::size_t i = 0; i < findings.size(); ++i) {
        findings.get(i, finding);
        const std::int32_t named = entryNamedIn(finding.message);
        const auto first = found.try_emplace(finding.entry, named).first;
        first->second = std::min(first->second, named);
        const std::string ofEntry = "/files/" + std::to_string(finding.entry);
        ASSERT_TRUE(finding.pointer.starts_with(ofEntry + "/"));
        const ordered_json::json_pointer place(finding.pointer.substr(ofEntry.size()));
        EXPECT_TRUE(entries[static_cast<std::size_t>(finding.entry)].contains(place)) << finding.pointer;
    }
    EXPECT_EQ(found, later);
    EXPECT_LT(later.size(), 300u);
}

namespace {

// The requests for memory while the paths of `count` entries are checked that write one path and differ in the version
// of hardware, and of one more that is for the same boards as the second of them.
std::size_t requestsForOnePath(unsigned count)
{
    std::vector<ordered_json> entries;
    for (unsigned i = 0; i < count; ++i) {
        entries.push_back({{"boardType", "T"}, {"targetPath", "a"}, {"hwCompatibilityId", i}});
    }
    entries.push_back({{"boardType", "T"}, {"targetPath", "a"}, {"hwCompatibilityId", 1}});
    ReadArchive read(entries);
    Check check(read.archive(), read.all());
    const std::size_t requests = allocationsOf([&] { checkPathCollisions(check); });

    const auto findings = check.takeFindings();
    EXPECT_EQ(findings.size(), 1u);
    ZoNTrellanInspector::ZoTFinding finding;
    findings.get(0, finding);
    EXPECT_EQ(finding.pointer, "/files/" + std::to_string(count) + "/targetPath");
    EXPECT_EQ(finding.message,
              "the path \"a\" is written by files[1] \"file1\" too on boards of type \"T\": "
              "choose another path");
    return requests;
}

}  // namespace

TEST(RandomCollisions, TakeNoMoreThanTwiceTheStepsForTwiceTheEntriesForOnePath)
{
    const std::size_t once = requestsForOnePath(1000);
    const std::size_t twice = requestsForOnePath(2000);
    EXPECT_GE(once, 1000u);
    EXPECT_LE(twice, once * 22 / 10) << once << " for 1,000 entries";
}
