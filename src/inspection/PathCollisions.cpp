// The rule that no two entries write the same file on one board, nor one the other's temporary file.
//
// What is written is sorted by path and type of board, so that entries that have nothing to do with one another are not
// compared, and rows of writers that ask for the same are compared once.
#include <algorithm>
#include <optional>
#include <set>
#include <span>
#include <tuple>
#include <unordered_map>

#include "base/QuotedText.h"
#include "inspection/AcceptedLists.h"
#include "inspection/Check.h"
#include "inspection/CommonBoards.h"
#include "inspection/Demands.h"
#include "inspection/Rules.h"
#include "operation/PathChecks.h"
#include "operation/TemporaryFile.h"

using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateBase::inQuotes;

namespace ZoNUpdateInspection {
namespace {

// Gives each text a number, in the order in which they come.
class NumberedTexts {
public:
    std::uint32_t numberOf(const std::string& text)
    {
        const auto [place, isNew] = numbers.try_emplace(text, static_cast<std::uint32_t>(texts.size()));
        if (isNew) {
            texts.push_back(&place->first);
        }
        return place->second;
    }

    std::optional<std::uint32_t> find(const std::string& text) const
    {
        const auto found = numbers.find(text);
        return found != numbers.end() ? std::optional(found->second) : std::nullopt;
    }

    const std::string& operator[](std::uint32_t number) const { return *texts[number]; }
    std::uint32_t size() const { return static_cast<std::uint32_t>(texts.size()); }

private:
    std::unordered_map<std::string, std::uint32_t> numbers;
    std::vector<const std::string*> texts;
};

// What has a path: an entry, or one of its board objects.
struct Writer {
    const ZoSUpdateFile* file;
    const ZoNJson::json* object;
    std::int32_t pathBoard;

    std::string path() const { return statedPath(*file, *object); }
};

// That a writer writes to boards of a type.
struct Write {
    std::uint32_t path;
    std::uint32_t type;
    std::uint32_t writer;
    std::uint32_t order;  // in which the types are stated

    auto target() const { return std::tuple(path, type); }
};

using Row = std::span<const Write>;  // of one path and type, by their writers

// What a writer has to do with the path of one before it; in the order in which it is told.
enum class Relation { sameFile, ofItsTemporary, itsTemporary };

struct Collision {
    const Write* write;
    Relation relation;
    std::uint32_t earlier;  // writer

    auto inOrder() const { return std::tuple(write->writer, relation, write->order); }
};

std::string nameOf(const Writer& writer)
{
    return "files[" + std::to_string(writer.file->entry) + "] \"" + nameInFindings(*writer.file) + "\"";
}

std::string messageFor(Relation relation, const Writer& writer, const Writer& earlier, const std::string& type)
{
    const std::string path = inQuotes(writer.path());
    const std::string boards = " on boards of type " + inQuotes(type) + ": choose another path";
    switch (relation) {
        case Relation::itsTemporary:
            return "the path " + path + " is that of the temporary file of " + nameOf(earlier) +
                   ", which is written to " + inQuotes(earlier.path()) + boards;
        case Relation::ofItsTemporary:
            return "the temporary file of the path " + path + " takes the place of " + nameOf(earlier) +
                   ", which is written to " + inQuotes(earlier.path()) + boards;
        default:
            return "the path " + path + " is written by " + nameOf(earlier) + " too" + boards;
    }
}

class Collisions {
public:
    void takeEntry(const ZoSUpdateFile& file)
    {
        std::optional<std::uint32_t> ofEntry;  // the path that board objects share
        forEachDemand(file, [&](const Demand& demand) {
            const Writer writer{&file, demand.object, demand.pathBoard};
            const bool isShared = writer.pathBoard < 0;
            const std::uint32_t path = isShared && ofEntry ? *ofEntry : paths.numberOf(normalisedPath(writer.path()));
            if (isShared) {
                ofEntry = path;
            }
            if (paths[path].empty()) {
                return;
            }
            for (const std::string& type : demand.boardTypes) {
                writes.push_back({path, types.numberOf(type), static_cast<std::uint32_t>(writers.size()),
                                  static_cast<std::uint32_t>(writes.size())});
            }
            writers.push_back(writer);
        });
    }

    void report(Check& check)
    {
        compareRows();
        std::sort(found.begin(), found.end(),
                  [](const Collision& a, const Collision& b) { return a.inOrder() < b.inOrder(); });
        // A board object that shares the entry's path, or a further board type, tells nothing new.
        std::set<std::tuple<Relation, std::int32_t, const ZoSUpdateFile*>> reported;
        const ZoSUpdateFile* entry = nullptr;
        for (const auto& [write, relation, earlierWriter] : found) {
            const Writer& writer = writers[write->writer];
            const Writer& earlier = writers[earlierWriter];
            if (writer.file != entry) {
                reported.clear();
                entry = writer.file;
            }
            if (reported.emplace(relation, writer.pathBoard, earlier.file).second) {
                check.report("path-collision", Check::Severity::ERROR, {*entry, "targetPath", writer.pathBoard},
                             messageFor(relation, writer, earlier, types[write->type]));
            }
        }
    }

private:
    // Rows that were compared, and what came of it.
    struct Compared {
        WriterRows rows;
        std::vector<std::optional<std::uint32_t>> found;
    };

    void compareRows()
    {
        std::sort(writes.begin(), writes.end(), [](const Write& a, const Write& b) {
            return std::tuple(a.target(), a.writer) < std::tuple(b.target(), b.writer);
        });
        const auto temporaries = temporaryFiles();
        for (auto begin = writes.begin(); begin != writes.end();) {
            const auto end = std::find_if(begin, writes.end(),
                                          [&](const Write& write) { return write.target() != begin->target(); });
            const Row row(begin, end);
            if (row.size() > 1) {
                compare(Relation::sameFile, row, row);
            }
            if (const auto temporary = temporaries[begin->path]) {
                const Row ofTemporary = rowOf(*temporary, begin->type);
                compare(Relation::ofItsTemporary, row, ofTemporary);
                compare(Relation::itsTemporary, ofTemporary, row);
            }
            begin = end;
        }
    }

    // For each path that of its temporary file, if anybody writes this.
    std::vector<std::optional<std::uint32_t>> temporaryFiles() const
    {
        std::vector<std::optional<std::uint32_t>> temporaries;
        for (std::uint32_t path = 0; path < paths.size(); ++path) {
            temporaries.push_back(paths.find(paths[path] + std::string(temporaryEnding)));
        }
        return temporaries;
    }

    Row rowOf(std::uint32_t path, std::uint32_t type) const
    {
        const auto [begin, end] =
            std::equal_range(writes.begin(), writes.end(), Write{path, type, 0, 0},
                             [](const Write& a, const Write& b) { return a.target() < b.target(); });
        return {begin, end};
    }

    // Notes each of `row` that has a board in common with one before it of `others`.
    void compare(Relation relation, const Row& row, const Row& others)
    {
        if (row.empty() || others.empty()) {
            return;
        }
        WriterRows rows{boardsOf(row), boardsOf(others), {}};
        auto behind = others.begin();
        for (const Write& write : row) {
            behind =
                std::find_if(behind, others.end(), [&](const Write& other) { return other.writer >= write.writer; });
            rows.before.push_back(static_cast<std::uint32_t>(behind - others.begin()));
        }
        Compared& last = compared[static_cast<std::size_t>(relation)];
        if (rows != last.rows) {
            last.found = firstInCommon(rows, lists);
            last.rows = std::move(rows);
        }
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (const auto earlier = last.found[i]) {
                found.push_back({&row[i], relation, others[*earlier].writer});
            }
        }
    }

    std::vector<WrittenBoards> boardsOf(const Row& row)
    {
        std::vector<WrittenBoards> boards;
        boards.reserve(row.size());
        for (const Write& write : row) {
            const Writer& writer = writers[write.writer];
            const StatedLists stated = statedLists(*writer.file, *writer.object);
            WrittenBoards& written = boards.emplace_back();
            for (std::size_t i = 0; i < written.size(); ++i) {
                written[i] = &lists.listOf(stated[i]);
            }
        }
        return boards;
    }

    NumberedTexts paths;
    NumberedTexts types;
    std::vector<Writer> writers;
    std::vector<Write> writes;
    AcceptedLists lists;
    std::array<Compared, 3> compared;  // by relation; the last of each
    std::vector<Collision> found;
};

}  // namespace

void checkPathCollisions(Check& check)
{
    Collisions collisions;
    for (const auto* const file : check.getFiles()) {
        collisions.takeEntry(*file);
    }
    collisions.report(check);
}

}  // namespace ZoNUpdateInspection
