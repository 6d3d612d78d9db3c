#include "inspection/Placements.h"

#include <algorithm>
#include <limits>
#include <unordered_set>

#include "assignment/MatchCriteria.h"
#include "assignment/ValueKey.h"

using namespace ZoNUpdateAssignment;
using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;

namespace ZoNUpdateInspection {
namespace {

// A board has numbers of 32 bits, and what it does not have is null and no empty text.
bool canBeHad(const json& value)
{
    if (value.is_string()) {
        return !std::string(value).empty();
    }
    return !value.is_number_unsigned() ||
           static_cast<unsigned long long>(value) <= std::numeric_limits<std::uint32_t>::max();
}

std::vector<std::string> acceptedValues(const json& expected)
{
    std::vector<std::string> keys;
    anyValue(expected, [&](const json& value) {
        if (const std::string key = valueKey(value); !key.empty() && canBeHad(value)) {
            keys.push_back(key);
        }
        return false;
    });
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    return keys;
}

class Placing {
public:
    explicit Placing(const ZoSUpdateFile& file) : file(file) {}

    void addBoard(const json& board, std::int32_t number)
    {
        const EntryProperties properties(board, file.jsonEntry);
        Placement placement{&file,
                            board.contains("targetPath") ? number : -1,
                            properties.targetPath().value_or(""),
                            decidedTypes(board),
                            {}};
        if (placement.boardTypes.empty()) {
            return;
        }
        for (const MatchCriterion& criterion : matchCriteria()) {
            placement.accepted.push_back(acceptedValues(properties.expected(criterion)));
        }
        placements.push_back(std::move(placement));
    }

    std::vector<Placement> placements;

private:
    std::vector<std::string> decidedTypes(const json& board)
    {
        std::vector<std::string> types;
        anyValue(board["boardType"], [&](const json& type) {
            if (type.is_string() && seenTypes.insert(std::string(type)).second) {
                types.emplace_back(type);
            }
            return false;
        });
        return types;
    }

    const ZoSUpdateFile& file;
    std::unordered_set<std::string> seenTypes;
};

bool intersect(const std::vector<std::string>& a, const std::vector<std::string>& b)
{
    for (auto i = a.begin(), j = b.begin(); i != a.end() && j != b.end();) {
        if (*i == *j) {
            return true;
        }
        ++(*i < *j ? i : j);
    }
    return false;
}

}  // namespace

std::vector<Placement> placementsOf(const ZoSUpdateFile& file)
{
    Placing placing(file);
    if (!file.hasTargetPath) {
        return {};
    }
    if (!file.jsonEntry.contains("boards")) {
        placing.addBoard(file.jsonEntry, -1);
    }
    std::int32_t number = 0;
    for (const json& board : file.jsonEntry["boards"]) {
        placing.addBoard(board, number++);
    }
    return std::move(placing.placements);
}

bool haveCommonBoard(const Placement& a, const Placement& b)
{
    return std::equal(a.accepted.begin(), a.accepted.end(), b.accepted.begin(), b.accepted.end(), intersect);
}

}  // namespace ZoNUpdateInspection
