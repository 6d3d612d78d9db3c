// One more walk over the table of criteria that decides what files are for: it does not end at the first criterion that
// is not met.
#include "inspection/Explanation.h"

#include <algorithm>

#include "base/PlatformText.h"
#include "inspection/BoardObjects.h"

using namespace ZoNUpdateAssignment;
using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateBase::allText;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateInspection {
namespace {

constexpr std::size_t nearestCount = 3;

bool isNearer(const Comparison& a, const Comparison& b)
{
    return a.unmet.size() < b.unmet.size();
}

// Elements of another kind have no id or no path that could be compared.
bool dependsOnKind(MatchCriterion::Index criterion)
{
    return criterion == MatchCriterion::id || criterion == MatchCriterion::targetPath;
}

struct ToJson {
    json operator()(std::monostate) const { return {}; }
    json operator()(const std::string& text) const { return json(text); }
    json operator()(unsigned long long number) const { return json(number); }
};

std::string textOf(const json& value)
{
    return value.dump(-1, ' ', false, ZoNJson::replace);  // a target's texts may be anything
}

}  // namespace

Explanation::Explanation(const std::vector<ZoSUpdateFile>& files) : files(files), pathOtherwise(targetPathOtherwise)
{
    for (std::size_t i = 0; i < this->files.size(); ++i) {
        for (const BoardObject& board : boardObjectsOf(this->files[i])) {
            const Decision decision{i, board.position, board.json};
            objects.push_back(decision);
            for (const std::string& type : board.decidesFor) {
                decisions[type].push_back(decision);
            }
        }
    }
}

std::vector<Comparison> Explanation::compare(const ZoSUpdateElement& element)
{
    const Decisions* const forType = decisionsFor(element);
    if (forType == nullptr) {
        Keys keys = keysOf(element);
        auto known = nearestByKeys.find(keys);
        if (known == nearestByKeys.end()) {
            known = nearestByKeys.emplace(std::move(keys), nearest(element)).first;
        }
        return known->second;
    }
    std::vector<Comparison> comparisons;
    for (const Decision& decision : *forType) {
        comparisons.push_back(hold(decision, element));
    }
    std::stable_sort(comparisons.begin(), comparisons.end(), isNearer);
    return comparisons;
}

Comparison Explanation::compare(const ZoSUpdateElement& element, std::size_t file) const
{
    return hold(*decisionOf(element, file), element);
}

bool Explanation::isForType(const ZoSUpdateElement& element, std::size_t file) const
{
    return decisionOf(element, file) != nullptr;
}

std::string Explanation::expected(const Comparison& comparison, MatchCriterion::Index criterion) const
{
    const Requirements requirements(*comparison.object, files[comparison.file], pathOtherwise);
    const json* const value = requirements.expected(matchCriteria[criterion]);
    return textOf(value != nullptr ? *value : json());
}

std::string Explanation::actual(const ZoSUpdateElement& element, MatchCriterion::Index criterion)
{
    const auto value = matchCriteria[criterion].actual(element);
    return textOf(value ? std::visit(ToJson(), *value) : json());
}

Explanation::Keys Explanation::keysOf(const ZoSUpdateElement& element)
{
    Keys keys;
    for (std::size_t i = 0; i < matchCriteria.size(); ++i) {
        if (i != MatchCriterion::boardType) {
            keys[i] = matchCriteria[i].actual(element);
        }
    }
    return keys;
}

const Explanation::Decisions* Explanation::decisionsFor(const ZoSUpdateElement& element) const
{
    const auto found = decisions.find(allText(element.boardType));
    return found != decisions.end() ? &found->second : nullptr;
}

const Explanation::Decision* Explanation::decisionOf(const ZoSUpdateElement& element, std::size_t file) const
{
    const Decisions* const forType = decisionsFor(element);
    if (forType == nullptr) {
        return nullptr;
    }
    const auto found =
        std::lower_bound(forType->begin(), forType->end(), file,
                         [](const Decision& decision, std::size_t position) { return decision.file < position; });
    return found != forType->end() && found->file == file ? &*found : nullptr;
}

Comparison Explanation::hold(const Decision& decision, const ZoSUpdateElement& element) const
{
    Comparison comparison{decision.file, decision.board, decision.object, {}};
    const Requirements requirements(*decision.object, files[decision.file], pathOtherwise);
    bool isOfKind = true;
    for (std::size_t i = 0; i < matchCriteria.size(); ++i) {
        const auto criterion = static_cast<MatchCriterion::Index>(i);
        if ((isOfKind || !dependsOnKind(criterion)) && !isMet(matchCriteria[i], requirements, element)) {
            comparison.unmet.push_back(criterion);
            isOfKind = isOfKind && criterion != MatchCriterion::kind;
        }
    }
    return comparison;
}

std::vector<Comparison> Explanation::nearest(const ZoSUpdateElement& element) const
{
    std::vector<Comparison> found;  // the nearest up to now
    for (auto object = objects.begin(); object != objects.end();) {
        Comparison best = hold(*object, element);
        for (++object; object != objects.end() && object->file == best.file; ++object) {
            Comparison other = hold(*object, element);
            if (isNearer(other, best)) {
                best = std::move(other);
            }
        }
        found.insert(std::upper_bound(found.begin(), found.end(), best, isNearer), std::move(best));
        if (found.size() > nearestCount) {
            found.pop_back();
        }
        if (found.size() == nearestCount && found.back().unmet.size() == 1) {
            break;  // the board type alone: none behind is nearer
        }
    }
    return found;
}

}  // namespace ZoNUpdateInspection
