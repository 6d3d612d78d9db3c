#include "assignment/RandomData.h"

#include "base/PlatformText.h"

using nlohmann::ordered_json;
using ZoNUpdateBase::platformText;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

// Among them texts that end where another goes on, that look like another kind of value, and with a NUL.
const std::vector<std::string> types = {"T", "T2", "A", "Apath /x", std::string("T\0Z", 3), "", "X Y", "\xC3\xA4"};
const std::vector<std::string> variants = {"V1", "V2", "null", "0", std::string("\0v", 2)};
const std::vector<ordered_json> fileVariants = {"V1", "V2", "null", "0", std::string("\0v", 2), nullptr, nullptr, ""};
const std::vector<std::string> paths = {"/a", "/b", "/a/b", "x", "", "/x/", "\\d", std::string("/a\0b", 4)};
const std::vector<std::uint32_t> elementNumbers = {0, 1, 2, 4294967295};
const std::vector<std::uint64_t> fileNumbers = {
    0, 0, 0, 1, 2, 4294967295, 4294967296, 4294967297, 18446744073709551615u};
const std::vector<std::uint64_t> wideIds = {4294967294, 4294967295, 4294967296, 8589934592, 18446744073709551615u};

// What equals nothing that an element has, however alike it looks.
const std::vector<ordered_json> mistakes = {
    true,
    -1,
    1.0,
    "1",
    ordered_json::object({{"T", "T"}}),
    ordered_json::array({ordered_json::array({"T", 1u, nullptr})}),
};

}  // namespace

ordered_json RandomData::entry()
{
    ordered_json result = ordered_json::object();
    const bool toFlashDrive = oneIn(3);
    const bool withBoards = oneIn(2);
    bool everyBoardStatesIt = withBoards;
    if (withBoards) {
        for (unsigned count = 1 + below(4); count > 0; --count) {
            ordered_json board = {{"boardType", boardType()}};
            addOptional(board);
            if (oneIn(2)) {
                addDestination(board, toFlashDrive);
            } else {
                everyBoardStatesIt = false;
            }
            result["boards"].push_back(board);
        }
    } else {
        result["boardType"] = boardType();
    }
    addOptional(result);
    if (!everyBoardStatesIt || oneIn(3)) {
        addDestination(result, toFlashDrive);
    }
    return result;
}

void RandomData::fill(ZoSUpdateElement& element)
{
    element.boardType = platformText(types[below(style.types)]);
    if (oneIn(3)) {
        element.variant = platformText(pick(variants));
    }
    element.productId = oneIn(3) ? pick(elementNumbers) : 0;
    element.hwCompatibilityId = oneIn(4) ? pick(elementNumbers) : 0;
    element.swCompatibilityId = oneIn(4) ? pick(elementNumbers) : 0;
    element.isFileSystemElement = oneIn(3);
    element.id = oneIn(20) ? 4294967295u : below(style.ids);
    element.location = platformText(oneIn(12) ? "*" : pick(paths));
}

template <class Value>
ordered_json RandomData::listed(const std::vector<Value>& values)
{
    if (oneIn(style.mistakeOneIn)) {
        return pick(mistakes);
    }
    if (oneIn(2)) {
        return pick(values);
    }
    ordered_json result = ordered_json::array();
    for (unsigned count = oneIn(8) ? 0 : 1 + below(style.longestList); count > 0; --count) {
        result.push_back(oneIn(style.mistakeOneIn) ? pick(mistakes) : ordered_json(pick(values)));
    }
    return result;
}

ordered_json RandomData::boardType()
{
    return listed(std::vector<std::string>(types.begin(), types.begin() + style.types));
}

void RandomData::addOptional(ordered_json& object)
{
    if (oneIn(style.statedOneIn)) {
        object["boardVariant"] = listed(fileVariants);
    }
    for (const char* property : {"boardId", "hwCompatibilityId", "swCompatibilityId"}) {
        if (oneIn(style.statedOneIn)) {
            object[property] = listed(fileNumbers);
        }
    }
}

void RandomData::addDestination(ordered_json& object, bool toFlashDrive)
{
    if (toFlashDrive) {
        object["targetPath"] = oneIn(15) ? "*" : pick(paths);
    } else {
        object["id"] = oneIn(10) ? pick(wideIds) : below(style.ids);
    }
}
