// Twice the entries and elements, at most 2.2 times the steps to give them to each other, also where entries accept
// much and fit little.
#include <gtest/gtest.h>

#include "assignment/ZoCUpdateAssignment.h"
#include "growth/Steps.h"
#include "growth/World.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr unsigned size = 1000;

std::size_t stepsOfAssignment(const Shape& shape, unsigned entries, unsigned elements)
{
    World world(shape, entries, elements, ZoNTrellanUpdater::COMPARE_VERSIONS);
    world.apply();
    ZoCUpdateAssignment& assignment = world.updater().getAssignment();
    assignment.forgetAssignment();
    return stepsOf([&] { assignment.makeAssignment(); });
}

void expectLinearAssignment(const Shape& shape)
{
    expectTwiceTheStepsAtMost(size, [&](unsigned count) { return stepsOfAssignment(shape, count, count); });
}

// As many values as `count`, from 1 on.
Json numbers(unsigned count)
{
    Json list = Json::array();
    for (unsigned i = 0; i < count; ++i) {
        list.push_back(i + 1);
    }
    return list;
}

std::string typeOf(unsigned number)
{
    return "T" + std::to_string(number);
}

}  // namespace

TEST(AssignmentGrowth, OfAPlainArchiveIsThatOfItsEntries)
{
    expectLinearAssignment(production());
}

// Files accept an odd number of second sorts, elements have an even one: any three criteria of four are met often, and
// all four never.
TEST(AssignmentGrowth, OfFourListsThatNeverFitIsThatOfTheEntries)
{
    constexpr unsigned length = 8;
    static constexpr unsigned odd[] = {1, 2, 4, 8, 7, 11, 13, 14};
    const auto entry = [](unsigned number) {
        Json members = {{"boardType", "T"}, {"id", 1}};
        unsigned bit = 0;
        for (const char* const property : {"boardVariant", "boardId", "hwCompatibilityId", "swCompatibilityId"}) {
            for (unsigned value = 0; value <= length; ++value) {
                const unsigned stated = value + (odd[number % 8] >> bit & 1) * 1000;
                if (value != (number >> bit) % (length + 1)) {
                    members[property].push_back(bit == 0 ? Json(std::to_string(stated)) : Json(stated));
                }
            }
            ++bit;
        }
        return members;
    };
    const auto element = [](Json& board, Json& parameters, unsigned number) {
        unsigned rest = number / 8;
        unsigned bit = 0;
        const auto next = [&] {
            const unsigned value = rest % (length + 1) + ((odd[number % 8] ^ 1) >> bit++ & 1) * 1000;
            rest /= length + 1;
            return value;
        };
        board["PRODUCT/VARIANT"] = std::to_string(next());
        board["PRODUCT/ID"] = next();
        parameters["HW_COMPATIBILITY_ID"] = next();
        parameters["SW_COMPATIBILITY_ID"] = next();
    };
    expectLinearAssignment({entry, element});
}

TEST(AssignmentGrowth, OfOneEntryForManyBoardTypesAndIdsIsThatOfItsValues)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const Shape shape{[=](unsigned) {
                              Json members = {{"id", 1}, {"hwCompatibilityId", numbers(count)}};
                              for (unsigned i = 0; i < count; ++i) {
                                  members["boardType"].push_back(typeOf(i));
                              }
                              return members;
                          },
                          [](Json& board, Json& parameters, unsigned number) {
                              board["PRODUCT/BOARD_TYPE"] = typeOf(number);
                              parameters["HW_COMPATIBILITY_ID"] = number + 1;
                          }};
        return stepsOfAssignment(shape, 1, count);
    });
}

// Every second board object states the ids itself, so what they share is asked for again and again.
TEST(AssignmentGrowth, OfManyBoardObjectsThatShareIdsIsThatOfTheObjects)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const Shape shape{[=](unsigned) {
                              Json members = {{"id", 1}, {"hwCompatibilityId", numbers(count)}};
                              for (unsigned i = 0; i < count; ++i) {
                                  Json board = {{"boardType", typeOf(i)}};
                                  if (i % 2 == 0) {
                                      board["hwCompatibilityId"] = {i, i + 1};
                                  }
                                  members["boards"].push_back(board);
                              }
                              return members;
                          },
                          [](Json& board, Json& parameters, unsigned number) {
                              board["PRODUCT/BOARD_TYPE"] = typeOf(number);
                              parameters["HW_COMPATIBILITY_ID"] = number + 1;
                          }};
        return stepsOfAssignment(shape, 1, count);
    });
}

// All entries are for the same elements but for their software versions, and all elements are alike: the last one fits.
TEST(AssignmentGrowth, OfOneKeyForAllIsThatOfTheEntries)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const Shape shape{[](unsigned number) {
                              return Json{{"boardType", "T"}, {"id", 1}, {"swCompatibilityId", {number, number + 1}}};
                          },
                          [=](Json&, Json& parameters, unsigned) { parameters["SW_COMPATIBILITY_ID"] = count; }};
        return stepsOfAssignment(shape, count, count);
    });
}

TEST(AssignmentGrowth, OfManySortsOfOneElementIsThatOfTheSorts)
{
    expectLinearAssignment(
        {[](unsigned number) {
             return Json{{"boardType", "T"}, {"id", 1}, {"hwCompatibilityId", {number, number + 1, number + 2}}};
         },
         [](Json&, Json& parameters, unsigned number) {
             parameters["HW_COMPATIBILITY_ID"] = number;
             parameters["SW_COMPATIBILITY_ID"] = number % 2;
         }});
}
