// Assigning update files that state much and fit little.
#include "AssignmentRun.h"
#include "HardCases.h"
#include "Measure.h"

namespace {

// All elements fit the last file only.
void assignIdenticalElements(benchmark::State& state)
{
    const unsigned last = sizeOf(state) - 1;
    measureAssignment(state, {[](unsigned i) {
                                  return Json{{"boardType", "T"}, {"id", i}};
                              },
                              [=](Element& element, unsigned) { element.id = last; }});
}

// The first file names all board types, each in a board object of its own.
void assignOneFileForManyBoards(benchmark::State& state)
{
    const unsigned count = sizeOf(state);
    const auto members = [=](unsigned i) {
        Json entry = {{"id", 1}};
        if (i > 0) {
            entry["boardType"] = "other";
            return entry;
        }
        for (unsigned type = 0; type < count; ++type) {
            entry["boards"].push_back({{"boardType", numbered("T", type)}});
        }
        return entry;
    };
    measureAssignment(state, {members, manyBoardTypes().change});
}

// Each file accepts 65 hardware versions, one of which an element has.
void assignManyAcceptedIds(benchmark::State& state)
{
    const auto members = [](unsigned i) {
        Json accepted = Json::array();
        for (unsigned k = 0; k < 65; ++k) {
            accepted.push_back(1000000 * k + i);
        }
        return Json{{"boardType", "T"}, {"id", 1}, {"hwCompatibilityId", std::move(accepted)}};
    };
    measureAssignment(state, {members, [](Element& element, unsigned i) { element.hwCompatibilityId = 64000000 + i; }});
}

void assignFourListsOfTen(benchmark::State& state)
{
    measureAssignment(state, fourLists(10));
}

void assignTwentyFilesWithFourListsOf32(benchmark::State& state)
{
    measureAssignment(state, {20, sizeOf(state)}, fourLists(32));
}

void assignOneFileOfManyBoardTypesAndVersions(benchmark::State& state)
{
    measureAssignment(state, {1, sizeOf(state)}, manyBoardTypesAndVersions(sizeOf(state)));
}

void assignOneFileOfManyBoardsAndVersions(benchmark::State& state)
{
    measureAssignment(state, {1, 2 * sizeOf(state)}, manyBoardsAndVersions(sizeOf(state)));
}

void assignOneKeyForAll(benchmark::State& state)
{
    measureAssignment(state, oneKeyForAll(sizeOf(state)));
}

// As many sorts of elements as files, which accept `values` values of three properties each.
template <unsigned values>
void assignManySorts(benchmark::State& state)
{
    constexpr unsigned range = 50;
    const auto list = [](unsigned first) {
        Json result = Json::array();
        for (unsigned i = 0; i < values; ++i) {
            result.push_back((first + 7 * i) % range);
        }
        return result;
    };
    const auto members = [=](unsigned i) {
        return Json{{"boardType", "T"},
                    {"id", 1},
                    {"boardId", list(i)},
                    {"hwCompatibilityId", list(i / range)},
                    {"swCompatibilityId", list(i / range / range)}};
    };
    const auto change = [](Element& element, unsigned i) {
        element.productId = i % range;
        element.hwCompatibilityId = i / range % range;
        element.swCompatibilityId = range - 1 - i / range / range % range;
    };
    measureAssignment(state, {members, change});
}

constexpr auto sizes = {1000, 10000, 30000};

const auto* const identical = measure("assign-identical-elements", assignIdenticalElements, sizes);
const auto* const oneFile = measure("assign-one-file-many-boards", assignOneFileForManyBoards, sizes);
const auto* const acceptedIds = measure("assign-many-accepted-ids", assignManyAcceptedIds, {100, 1000, 10000});
const auto* const fourListsOfTen = measure("assign-four-lists-of-10", assignFourListsOfTen, {100, 1000, 10000});
const auto* const fourListsOf32 = measure("assign-four-lists-of-32", assignTwentyFilesWithFourListsOf32, sizes);
const auto* const types = measure("assign-many-types-and-ids", assignOneFileOfManyBoardTypesAndVersions, sizes);
const auto* const boards = measure("assign-many-boards-and-ids", assignOneFileOfManyBoardsAndVersions, sizes);
const auto* const oneKey = measure("assign-one-key-for-all", assignOneKeyForAll, {1000, 10000, 100000});
const auto* const oneValue = measure("assign-many-sorts-1-value", assignManySorts<1>, sizes);
const auto* const threeValues = measure("assign-many-sorts-3-values", assignManySorts<3>, {1000, 10000, 100000});

}  // namespace
