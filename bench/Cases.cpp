#include "Cases.h"

#include "Workspace.h"

namespace {

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

nlohmann::json manyVersions(unsigned count)
{
    nlohmann::json entry = {{"id", 1}};
    for (unsigned i = 0; i < count; ++i) {
        entry["hwCompatibilityId"].push_back(i + 1);
    }
    return entry;
}

}  // namespace

std::string numbered(const char* text, unsigned number)
{
    return text + std::to_string(number);
}

nlohmann::json entriesOf(unsigned count, const Case& data)
{
    nlohmann::json entries = nlohmann::json::array();
    for (unsigned i = 0; i < count; ++i) {
        entries.push_back(entryOf(data.members(i)));
    }
    return entries;
}

Element elementOf(unsigned number, const Case& data)
{
    Element element;
    element.boardType = ZoCString("T");
    element.id = 1;
    element.valid = true;
    element.active = true;
    data.change(element, number);
    return element;
}

nlohmann::json targetOf(unsigned count, const Case& data)
{
    nlohmann::json boards = nlohmann::json::array();
    for (unsigned i = 0; i < count; ++i) {
        const Element element = elementOf(i, data);
        const nlohmann::json item = {{"id", "UPDATE_ELEMENT[1]"},
                                     {"parameters",
                                      {{"ID", element.id},
                                       {"NAME", "UserFirmware"},
                                       {"CONFIGURATION", 0},
                                       {"VALID", 1},
                                       {"ACTIVE", 1},
                                       {"VERSION", "1.0"},
                                       {"CHECKSUM_CRC32", 7},
                                       {"HW_COMPATIBILITY_ID", element.hwCompatibilityId},
                                       {"SW_COMPATIBILITY_ID", element.swCompatibilityId}}}};
        boards.push_back({{"id", "IOMODULE[" + std::to_string(i + 1) + "]"},
                          {"parameters",
                           {{"PRODUCT/BOARD_TYPE", element.boardType.c_str()},
                            {"PRODUCT/VARIANT", element.variant.c_str()},
                            {"PRODUCT/ID", element.productId},
                            {"PRODUCT/SERIAL_NUMBER", i + 1}}},
                          {"items", {{{"id", "UPDATE_INFO"}, {"items", {item}}}}}});
    }
    return {{"tree", {{"id", "ROOT"}, {"items", std::move(boards)}}}};
}

Case manyBoardTypes()
{
    return {[](unsigned i) {
                return nlohmann::json{{"boardType", numbered("T", i)}, {"id", 1}};
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
    nlohmann::json entry = manyVersions(count);
    for (unsigned type = 0; type < count; ++type) {
        entry["boardType"].push_back(numbered("T", type));
    }
    return {[=](unsigned) { return entry; },
            [](Element& element, unsigned i) { element.boardType = ZoCString(numbered("T", i).c_str()); }};
}

Case manyBoardsAndVersions(unsigned count)
{
    nlohmann::json entry = manyVersions(count);
    for (unsigned type = 0; type < count; ++type) {
        entry["boards"].push_back({{"boardType", numbered("T", type)}});
    }
    return {[=](unsigned) { return entry; },
            [](Element& element, unsigned i) {
                element.boardType = ZoCString(numbered("T", i / 2).c_str());
                element.productId = i % 2;
            }};
}
