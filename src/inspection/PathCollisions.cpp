// The rule that no two entries write the same file on one board, nor one the other's temporary file.
//
// Demands are looked up by what they write and the type of the board; among those, by the criterion that the fewest
// of them share a value of. So entries that have nothing to do with one another are not compared.
#include <algorithm>
#include <deque>
#include <optional>
#include <set>
#include <tuple>
#include <unordered_map>

#include "base/QuotedText.h"
#include "inspection/Check.h"
#include "inspection/Demands.h"
#include "inspection/Rules.h"
#include "operation/PathChecks.h"
#include "operation/TemporaryFile.h"

using ZoNUpdateAssignment::MatchValue;
using ZoNUpdateBase::inQuotes;

namespace ZoNUpdateInspection {
namespace {

// Demands that write one file on boards of one type.
class Writers {
public:
    void add(const Demand& demand)
    {
        demands.push_back(&demand);
        if (demands.size() <= few) {
            return;
        }
        const std::size_t first = indexes.empty() ? 0 : demands.size() - 1;
        for (std::size_t position = first; position < demands.size(); ++position) {
            addToIndexes(position);
        }
    }

    // The first of them that has a board in common with `demand`; null when there is none.
    const Demand* firstInCommonWith(const Demand& demand) const
    {
        if (indexes.empty()) {
            const auto found = std::find_if(demands.begin(), demands.end(),
                                            [&](const Demand* earlier) { return haveCommonBoard(*earlier, demand); });
            return found != demands.end() ? *found : nullptr;
        }
        std::size_t first = demands.size();
        for (const std::vector<std::size_t>* const candidates : fewestCandidates(demand)) {
            const auto found = std::find_if(candidates->begin(), candidates->end(), [&](std::size_t candidate) {
                return haveCommonBoard(*demands[candidate], demand);
            });
            if (found != candidates->end()) {
                first = std::min(first, *found);
            }
        }
        return first < demands.size() ? demands[first] : nullptr;
    }

private:
    using Candidates = std::vector<const std::vector<std::size_t>*>;

    // As many are looked through: most files are written by one, and an index takes more memory than the demand.
    static constexpr std::size_t few = 8;

    void addToIndexes(std::size_t position)
    {
        const Demand& demand = *demands[position];
        indexes.resize(demand.accepted.size());
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            for (const MatchValue& value : demand.accepted[i]) {
                indexes[i][value].push_back(position);
            }
        }
    }

    Candidates fewestCandidates(const Demand& demand) const
    {
        Candidates fewest;
        std::optional<std::size_t> fewestCount;
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            Candidates candidates;
            std::size_t count = 0;
            for (const MatchValue& value : demand.accepted[i]) {
                if (const auto found = indexes[i].find(value); found != indexes[i].end()) {
                    candidates.push_back(&found->second);
                    count += found->second.size();
                }
            }
            if (!fewestCount || count < *fewestCount) {
                fewestCount = count;
                fewest = std::move(candidates);
            }
        }
        return fewest;
    }

    std::vector<const Demand*> demands;
    std::vector<std::unordered_map<MatchValue, std::vector<std::size_t>>>
        indexes;  // by criterion and value; empty: few
};

std::string nameOf(const Demand& demand)
{
    return "files[" + std::to_string(demand.file->entry) + "] \"" + nameInFindings(*demand.file) + "\"";
}

// What a demand has to do with the path of one before it.
enum class Relation { sameFile, itsTemporary, ofItsTemporary };

std::string messageFor(Relation relation, const Demand& demand, const Demand& earlier, const std::string& type)
{
    const std::string boards = " on boards of type " + inQuotes(type) + ": choose another path";
    switch (relation) {
        case Relation::itsTemporary:
            return "the path " + inQuotes(demand.path) + " is that of the temporary file of " + nameOf(earlier) +
                   ", which is written to " + inQuotes(earlier.path) + boards;
        case Relation::ofItsTemporary:
            return "the temporary file of the path " + inQuotes(demand.path) + " takes the place of " +
                   nameOf(earlier) + ", which is written to " + inQuotes(earlier.path) + boards;
        default:
            return "the path " + inQuotes(demand.path) + " is written by " + nameOf(earlier) + " too" + boards;
    }
}

class Collisions {
public:
    explicit Collisions(Check& check) : check(check) {}

    void takeEntry(const ZoNUpdateArchive::ZoSUpdateFile& file)
    {
        reported.clear();
        for (Demand& demand : demandsOf(file)) {
            const std::string path = normalisedPath(demand.path);
            if (!path.empty()) {
                const Demand& kept = demands.emplace_back(std::move(demand));
                compare(kept, path);
                for (const std::string& type : kept.boardTypes) {
                    writersOf[path][type].add(kept);
                }
            }
        }
    }

private:
    void compare(const Demand& demand, const std::string& path)
    {
        compareWith(Relation::sameFile, demand, path);
        compareWith(Relation::ofItsTemporary, demand, path + std::string(temporaryEnding));
        if (path.ends_with(temporaryEnding)) {
            compareWith(Relation::itsTemporary, demand, path.substr(0, path.size() - temporaryEnding.size()));
        }
    }

    void compareWith(Relation relation, const Demand& demand, const std::string& path)
    {
        const auto writers = writersOf.find(path);
        if (writers == writersOf.end()) {
            return;
        }
        for (const std::string& type : demand.boardTypes) {
            const auto ofType = writers->second.find(type);
            const Demand* const earlier =
                ofType != writers->second.end() ? ofType->second.firstInCommonWith(demand) : nullptr;
            if (earlier != nullptr && reported.emplace(relation, demand.pathBoard, earlier->file).second) {
                check.report("path-collision", Check::Severity::ERROR, {*demand.file, "targetPath", demand.pathBoard},
                             messageFor(relation, demand, *earlier, type));
            }
        }
    }

    Check& check;
    std::deque<Demand> demands;                                                           // where they are, they stay
    std::unordered_map<std::string, std::unordered_map<std::string, Writers>> writersOf;  // by path and type of board
    // Of the entry: a board object that shares the entry's path, or a further board type, tells nothing new.
    std::set<std::tuple<Relation, std::int32_t, const ZoNUpdateArchive::ZoSUpdateFile*>> reported;
};

}  // namespace

void checkPathCollisions(Check& check)
{
    Collisions collisions(check);
    for (const auto* const file : check.getFiles()) {
        collisions.takeEntry(*file);
    }
}

}  // namespace ZoNUpdateInspection
