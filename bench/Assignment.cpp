// Assigning update files to update elements, and the phases.
#include <benchmark/benchmark.h>

#include <functional>
#include <stdexcept>

#include "Workspace.h"
#include "assignment/ZoCUpdateAssignment.h"

namespace {

using Element = ZoNUpdateInventory::ZoSUpdateElement;

using Members = std::function<nlohmann::json(unsigned)>;  // of the file entry with this number
using Change = std::function<void(Element&, unsigned)>;   // what the element with this number is

struct Size {
    unsigned files;
    unsigned elements;
};

// Every element's file is newer, so that each run of the assignment does the same.
void prepare(Workspace& workspace, Size size, const Members& members, const Change& change)
{
    nlohmann::json entries = nlohmann::json::array();
    for (unsigned i = 0; i < size.files; ++i) {
        entries.push_back(entryOf(members(i)));
    }
    const std::string path = workspace.write("archive.json", descriptionOf(entries));
    if (!workspace.updater().getArchive().readDescriptionFileJson(workspace.errors(), path)) {
        throw std::runtime_error("the archive description is not valid");
    }
    for (unsigned i = 0; i < size.elements; ++i) {
        Element& element = workspace.updater().getInventory().getUpdateElementList().emplace_back();
        element.index = i;
        element.boardType = ZoCString("T");
        element.id = 1;
        element.valid = true;
        element.active = true;
        change(element, i);
    }
}

void run(benchmark::State& state, Size size, const Members& members, const Change& change)
{
    Workspace workspace;
    prepare(workspace, size, members, change);
    for ([[maybe_unused]] auto iteration : state) {
        workspace.updater().getAssignment().makeAssignment();
    }
    double assigned = 0;
    for (const Element& element : workspace.updater().getInventory().getUpdateElementList()) {
        assigned += element.updateFileIndex >= 0 ? 1 : 0;
    }
    state.counters["assigned"] = assigned;
    state.SetComplexityN(state.range(0));
}

// As many files as elements.
void run(benchmark::State& state, const Members& members, const Change& change)
{
    const auto count = static_cast<unsigned>(state.range(0));
    run(state, {count, count}, members, change);
}

std::string numbered(const char* text, unsigned number)
{
    return text + std::to_string(number);
}

void assignManyBoardTypes(benchmark::State& state)
{
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", numbered("T", i)}, {"id", 1}};
        },
        [](Element& element, unsigned i) { element.boardType = ZoCString(numbered("T", i).c_str()); });
}

void assignManyIdsOfOneBoardType(benchmark::State& state)
{
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", "T"}, {"id", i}};
        },
        [](Element& element, unsigned i) { element.id = i; });
}

// All elements fit the last file only.
void assignIdenticalElements(benchmark::State& state)
{
    const auto last = static_cast<std::uint32_t>(state.range(0) - 1);
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", "T"}, {"id", i}};
        },
        [=](Element& element, unsigned) { element.id = last; });
}

void assignManyTargetPaths(benchmark::State& state)
{
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", "T"}, {"targetPath", numbered("/data/", i)}};
        },
        [](Element& element, unsigned i) {
            element.isFileSystemElement = true;
            element.location = ZoCString(numbered("/data/", i).c_str());
        });
}

// Files that differ in nothing but the variant.
void assignManyVariants(benchmark::State& state)
{
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", "T"}, {"id", 1}, {"boardVariant", numbered("V", i)}};
        },
        [](Element& element, unsigned i) { element.variant = ZoCString(numbered("V", i).c_str()); });
}

// The first file names all board types, each in a board object of its own.
void assignOneFileForManyBoards(benchmark::State& state)
{
    const auto count = static_cast<unsigned>(state.range(0));
    auto members = [=](unsigned i) {
        nlohmann::json entry = {{"id", 1}};
        if (i > 0) {
            entry["boardType"] = "other";
            return entry;
        }
        for (unsigned type = 0; type < count; ++type) {
            entry["boards"].push_back({{"boardType", numbered("T", type)}});
        }
        return entry;
    };
    run(state, members, [](Element& element, unsigned i) { element.boardType = ZoCString(numbered("T", i).c_str()); });
}

// Each file accepts 65 hardware versions, one of which an element has.
void assignManyAcceptedIds(benchmark::State& state)
{
    run(
        state,
        [](unsigned i) {
            nlohmann::json accepted = nlohmann::json::array();
            for (unsigned k = 0; k < 65; ++k) {
                accepted.push_back(1000000 * k + i);
            }
            return nlohmann::json{{"boardType", "T"}, {"id", 1}, {"hwCompatibilityId", accepted}};
        },
        [](Element& element, unsigned i) { element.hwCompatibilityId = 64000000 + i; });
}

// The hard cases: files that state much and fit little.

// Four properties with two sorts of values each. The elements have an even number of the second sort, the files accept
// an odd number: in any three properties a file accepts what many elements have, and in all four it never does.
class TwoSorts {
public:
    // Each list of a file has `length` of the length + 1 values of its sort.
    explicit TwoSorts(unsigned length) : length(length) {}

    nlohmann::json members(unsigned file) const
    {
        const unsigned sorts = odd(file);
        nlohmann::json result = {{"boardType", "T"}, {"id", 1}};
        unsigned bit = 0;
        for (const char* property : {"boardVariant", "boardId", "hwCompatibilityId", "swCompatibilityId"}) {
            nlohmann::json& list = result[property] = nlohmann::json::array();
            for (unsigned value = 0; value <= length; ++value) {
                if (value != (file >> bit) % (length + 1)) {
                    const unsigned number = value + (sorts >> bit & 1) * 1000;
                    list.push_back(bit == 0 ? nlohmann::json(numbered("V", number)) : nlohmann::json(number));
                }
            }
            ++bit;
        }
        return result;
    }

    void change(Element& element, unsigned number) const
    {
        const unsigned sorts = odd(number) ^ 1;
        const unsigned values = length + 1;
        unsigned rest = number / 8;
        const auto next = [&](unsigned bit) {
            const unsigned value = rest % values + (sorts >> bit & 1) * 1000;
            rest /= values;
            return value;
        };
        element.variant = ZoCString(numbered("V", next(0)).c_str());
        element.productId = next(1);
        element.hwCompatibilityId = next(2);
        element.swCompatibilityId = next(3);
    }

private:
    // One of the eight sets of an odd number of bits of four.
    static unsigned odd(unsigned number)
    {
        constexpr unsigned sets[] = {1, 2, 4, 8, 7, 11, 13, 14};
        return sets[number % 8];
    }

    unsigned length;
};

void assignFourListsOfTen(benchmark::State& state)
{
    const TwoSorts data(10);
    run(
        state, [&](unsigned i) { return data.members(i); },
        [&](Element& element, unsigned i) { data.change(element, i); });
}

void assignTwentyFilesWithFourListsOf32(benchmark::State& state)
{
    const TwoSorts data(32);
    run(
        state, {20, static_cast<unsigned>(state.range(0))}, [&](unsigned i) { return data.members(i); },
        [&](Element& element, unsigned i) { data.change(element, i); });
}

// One file with n board types, which all share its n hardware versions; no element has one of these.
nlohmann::json manyVersions(unsigned count)
{
    nlohmann::json entry = {{"id", 1}};
    for (unsigned i = 0; i < count; ++i) {
        entry["hwCompatibilityId"].push_back(i + 1);
    }
    return entry;
}

void assignOneFileOfManyBoardTypesAndVersions(benchmark::State& state)
{
    const auto count = static_cast<unsigned>(state.range(0));
    nlohmann::json entry = manyVersions(count);
    for (unsigned type = 0; type < count; ++type) {
        entry["boardType"].push_back(numbered("T", type));
    }
    run(
        state, {1, count}, [&](unsigned) { return entry; },
        [](Element& element, unsigned i) { element.boardType = ZoCString(numbered("T", i).c_str()); });
}

// The same with a board object for each type, and two elements on each board that differ.
void assignOneFileOfManyBoardsAndVersions(benchmark::State& state)
{
    const auto count = static_cast<unsigned>(state.range(0));
    nlohmann::json entry = manyVersions(count);
    for (unsigned type = 0; type < count; ++type) {
        entry["boards"].push_back({{"boardType", numbered("T", type)}});
    }
    run(
        state, {1, 2 * count}, [&](unsigned) { return entry; },
        [](Element& element, unsigned i) {
            element.boardType = ZoCString(numbered("T", i / 2).c_str());
            element.productId = i % 2;
        });
}

// Files that are all for the same elements but for their software versions, and elements that are all alike: the last
// file fits.
void assignOneKeyForAll(benchmark::State& state)
{
    const auto last = static_cast<unsigned>(state.range(0));
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", "T"}, {"id", 1}, {"swCompatibilityId", {i, i + 1}}};
        },
        [=](Element& element, unsigned) { element.swCompatibilityId = last; });
}

// A target with as many sorts of elements as files, which accept `values` values of three properties each.
void assignManySortsOfOneTarget(benchmark::State& state, unsigned values)
{
    constexpr unsigned range = 50;
    const auto list = [=](unsigned first) {
        nlohmann::json result = nlohmann::json::array();
        for (unsigned i = 0; i < values; ++i) {
            result.push_back((first + 7 * i) % range);
        }
        return result;
    };
    run(
        state,
        [&](unsigned i) {
            return nlohmann::json{{"boardType", "T"},
                                  {"id", 1},
                                  {"boardId", list(i)},
                                  {"hwCompatibilityId", list(i / range)},
                                  {"swCompatibilityId", list(i / range / range)}};
        },
        [](Element& element, unsigned i) {
            element.productId = i % range;
            element.hwCompatibilityId = i / range % range;
            element.swCompatibilityId = range - 1 - i / range / range % range;
        });
}

void assignSortsWithOneValueEach(benchmark::State& state)
{
    assignManySortsOfOneTarget(state, 1);
}

void assignSortsWithThreeValuesEach(benchmark::State& state)
{
    assignManySortsOfOneTarget(state, 3);
}

void computePhases(benchmark::State& state)
{
    Workspace workspace;
    const auto count = static_cast<unsigned>(state.range(0));
    // 7919 is prime and no size is a multiple of it: every sequence occurs once, in no order.
    auto members = [=](unsigned i) {
        return nlohmann::json{{"boardType", "T"}, {"id", i}, {"sequence", 7919ull * i % count}};
    };
    prepare(workspace, {count, count}, members, [](Element& element, unsigned i) { element.id = i; });
    ZoCUpdateAssignment& assignment = workspace.updater().getAssignment();
    assignment.makeAssignment();
    for ([[maybe_unused]] auto iteration : state) {
        assignment.computeUpdatePhase();
    }
    state.counters["phases"] = assignment.getNumberOfUpdatePhases();
    state.SetComplexityN(state.range(0));
}

}  // namespace

#define TRELLAN_BENCHMARK(function, largest) \
    BENCHMARK(function)                      \
        ->Arg(largest / 100)                 \
        ->Arg(largest / 10)                  \
        ->Arg(largest)                       \
        ->Unit(benchmark::kMillisecond)      \
        ->Complexity()

TRELLAN_BENCHMARK(assignManyBoardTypes, 100000);
TRELLAN_BENCHMARK(assignManyIdsOfOneBoardType, 100000);
TRELLAN_BENCHMARK(assignIdenticalElements, 100000);
TRELLAN_BENCHMARK(assignManyTargetPaths, 100000);
TRELLAN_BENCHMARK(assignManyVariants, 100000);
TRELLAN_BENCHMARK(assignManyAcceptedIds, 10000);
TRELLAN_BENCHMARK(assignOneFileForManyBoards, 100000);
TRELLAN_BENCHMARK(computePhases, 100000);

TRELLAN_BENCHMARK(assignFourListsOfTen, 10000);
TRELLAN_BENCHMARK(assignTwentyFilesWithFourListsOf32, 100000);
TRELLAN_BENCHMARK(assignOneFileOfManyBoardTypesAndVersions, 30000);
TRELLAN_BENCHMARK(assignOneFileOfManyBoardsAndVersions, 30000);
TRELLAN_BENCHMARK(assignOneKeyForAll, 100000);
TRELLAN_BENCHMARK(assignSortsWithOneValueEach, 100000);
TRELLAN_BENCHMARK(assignSortsWithThreeValuesEach, 100000);
