#include "HardCases.h"

namespace {

class TwoSorts {
public:
    // Each list of a file has `length` of the length + 1 values of its sort.
    explicit TwoSorts(unsigned length) : length(length) {}

    Json members(unsigned file) const
    {
        const unsigned sorts = odd(file);
        Json result = {{"boardType", "T"}, {"id", 1}};
        unsigned bit = 0;
        for (const char* property : {"boardVariant", "boardId", "hwCompatibilityId", "swCompatibilityId"}) {
            Json& list = result[property] = Json::array();
            for (unsigned value = 0; value <= length; ++value) {
                if (value != (file >> bit) % (length + 1)) {
                    const unsigned number = value + (sorts >> bit & 1) * 1000;
                    list.push_back(bit == 0 ? Json(numbered("V", number)) : Json(number));
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

Json manyVersions(unsigned count)
{
    Json entry = {{"id", 1}};
    for (unsigned i = 0; i < count; ++i) {
        entry["hwCompatibilityId"].push_back(i + 1);
    }
    return entry;
}

}  // namespace

Case manyBoardTypes()
{
    return {[](unsigned i) {
                return Json{{"boardType", numbered("T", i)}, {"id", 1}};
            },
            [](Element& element, unsigned i) { element.boardType = ZoCString(numbered("T", i).c_str()); }};
}

Case fourLists(unsigned length)
{
    const TwoSorts data(length);
    return {[=](unsigned i) { return data.members(i); },
            [=](Element& element, unsigned i) { data.change(element, i); }};
}

Case manyBoardTypesAndVersions(unsigned count)
{
    Json entry = manyVersions(count);
    for (unsigned type = 0; type < count; ++type) {
        entry["boardType"].push_back(numbered("T", type));
    }
    return {[=](unsigned) { return entry; },
            [](Element& element, unsigned i) { element.boardType = ZoCString(numbered("T", i).c_str()); }};
}

Case manyBoardsAndVersions(unsigned count)
{
    Json entry = manyVersions(count);
    for (unsigned type = 0; type < count; ++type) {
        entry["boards"].push_back({{"boardType", numbered("T", type)}});
    }
    return {[=](unsigned) { return entry; },
            [](Element& element, unsigned i) {
                element.boardType = ZoCString(numbered("T", i / 2).c_str());
                element.productId = i % 2;
            }};
}

Case oneKeyForAll(unsigned count)
{
    return {[](unsigned i) {
                return Json{{"boardType", "T"}, {"id", 1}, {"swCompatibilityId", {i, i + 1}}};
            },
            [=](Element& element, unsigned) { element.swCompatibilityId = count; }};
}
