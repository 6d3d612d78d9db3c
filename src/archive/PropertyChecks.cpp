// Checks of the properties that a file entry or one of its boards may have.
#include "archive/Properties.h"
#include "archive/ZoCUpdateArchive.h"

using namespace ZoNUpdateArchive;

namespace {

using ZoNJson::json;
using Test = bool (json::*)() const noexcept;

struct PropertyType {
    const char* name;
    Test accepted[3];  // the accepted types; unused places are null
};

constexpr Test unsignedInteger = &json::is_number_unsigned;
constexpr Test string = &json::is_string;
constexpr Test array = &json::is_array;
constexpr Test null = &json::is_null;

// In the order of the checks: of several properties with a wrong type, the last one is named.
constexpr PropertyType propertyTypes[] = {
    {"boardType", {string, array}},
    {"boardVariant", {null, string, array}},
    {"boardId", {unsignedInteger, array}},
    {"id", {unsignedInteger}},
    {"targetPath", {string}},
    {"hwCompatibilityId", {unsignedInteger, array}},
    {"swCompatibilityId", {unsignedInteger, array}},
    {"version", {string, null}},
    {"checksumCrc32", {unsignedInteger}},
    {"mode", {string}},
};

// What the elements of array properties may be, in the order of the checks: the first bad property is named.
constexpr PropertyType elementTypes[] = {
    {"boardType", {string}},
    {"boardVariant", {string, null}},
    {"boardId", {unsignedInteger}},
    {"hwCompatibilityId", {unsignedInteger}},
    {"swCompatibilityId", {unsignedInteger}},
};

bool isAccepted(const json& value, const PropertyType& type)
{
    for (const Test test : type.accepted) {
        if (test != nullptr && (value.*test)()) {
            return true;
        }
    }
    return false;
}

bool areElementsAccepted(const json& value, const PropertyType& type)
{
    for (const json& element : value) {  // a value that is no array has no elements
        if (!isAccepted(element, type)) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool ZoCUpdateArchive::checkOptionalProperties(const json& object, std::uint32_t entry, std::int32_t board) const
{
    if (!checkPropertyTypes(object, entry, board) || !checkPropertyElements(object, entry, board)) {
        return false;
    }
    const bool isBoard = board >= 0;
    const unsigned boardNumber = isBoard ? static_cast<unsigned>(board) : 0;
    if (hasString(object, "version") && toVersion(object["version"]).getAsULong64() == 0) {
        return isBoard ? fail(
                             "ERROR: File entry %u is invalid. Property \"version\" of \"boards\" element %u is "
                             "invalid.\n",
                             entry, boardNumber)
                       : fail("ERROR: File entry %u is invalid. Property \"version\" is invalid.\n", entry);
    }
    if (object.contains("mode")) {
        const std::string mode(object["mode"]);
        if (mode != "standard" && mode != "upgrade") {
            return isBoard ? fail(
                                 "ERROR: File entry %u is invalid. Property \"mode\" of \"boards\" element %u is "
                                 "invalid.\n",
                                 entry, boardNumber)
                           : fail("ERROR: File entry %u is invalid. Property \"mode\" is invalid.\n", entry);
        }
    }
    if (isBoard && (object.contains("version") || object.contains("checksumCrc32") || object.contains("mode"))) {
        return fail(
            "ERROR: File entry %u is invalid. \"boards\" element %u is invalid. Properties \"version\", "
            "\"checksumCrc32\" and \"mode\" must not be specified inside a \"boards\" element.\n",
            entry, boardNumber);
    }
    return true;
}

bool ZoCUpdateArchive::checkPropertyTypes(const json& object, std::uint32_t entry, std::int32_t board) const
{
    const char* offender = nullptr;
    for (const PropertyType& type : propertyTypes) {
        if (object.contains(type.name) && !isAccepted(object[type.name], type)) {
            offender = type.name;
        }
    }
    if (offender == nullptr) {
        return true;
    }
    return board < 0 ? fail("ERROR: File entry %u is invalid. Property \"%s\" has an invalid value.\n", entry, offender)
                     : fail(
                           "ERROR: File entry %u is invalid. Property \"%s\" of \"boards\"-element %u has an invalid "
                           "value.\n",
                           entry, offender, static_cast<unsigned>(board));
}

bool ZoCUpdateArchive::checkPropertyElements(const json& object, std::uint32_t entry, std::int32_t board) const
{
    for (const PropertyType& type : elementTypes) {
        if (!object.contains(type.name) || areElementsAccepted(object[type.name], type)) {
            continue;
        }
        return board < 0
                   ? fail("ERROR: File entry %u is invalid. Property \"%s\" has invalid elements.\n", entry, type.name)
                   : fail(
                         "ERROR: File entry %u is invalid. Property \"%s\" of \"boards\" element %u has "
                         "invalid elements.\n",
                         entry, type.name, static_cast<unsigned>(board));
    }
    return true;
}
