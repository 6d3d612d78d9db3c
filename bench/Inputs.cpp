#include "Inputs.h"

namespace {

Json itemOf(const Element& element, unsigned place)
{
    Json parameters = {{"NAME", "UserFirmware"},
                       {"CONFIGURATION", 0},
                       {"VALID", 1},
                       {"ACTIVE", 1},
                       {"VERSION", element.version.getAsString().c_str()},
                       {"CHECKSUM_CRC32", element.checksumCrc32},
                       {"HW_COMPATIBILITY_ID", element.hwCompatibilityId},
                       {"SW_COMPATIBILITY_ID", element.swCompatibilityId}};
    if (element.isFileSystemElement) {
        parameters["LOCATION"] = element.location.c_str();
    } else {
        parameters["ID"] = element.id;
    }
    const char* const kind = element.isFileSystemElement ? "FILESYSTEM_ELEMENT[" : "UPDATE_ELEMENT[";
    return {{"id", numbered(kind, place) + "]"}, {"parameters", std::move(parameters)}};
}

Json boardOf(const Element& element, unsigned number, Json items)
{
    return {{"id", numbered("IOMODULE[", number) + "]"},
            {"parameters",
             {{"PRODUCT/BOARD_TYPE", element.boardType.c_str()},
              {"PRODUCT/VARIANT", element.variant.c_str()},
              {"PRODUCT/ID", element.productId},
              {"PRODUCT/SERIAL_NUMBER", number}}},
            {"items", {{{"id", "UPDATE_INFO"}, {"items", std::move(items)}}}}};
}

}  // namespace

std::string numbered(const char* text, unsigned number)
{
    return text + std::to_string(number);
}

Json descriptionOf(unsigned count, const Members& members)
{
    Json entries = Json::array();
    for (unsigned i = 0; i < count; ++i) {
        Json entry = {{"name", "file.bin"}, {"sequence", 1}, {"checksumCrc32", 1}, {"version", "2.0"}};
        entry.update(members(i));
        entries.push_back(std::move(entry));
    }
    return {
        {"info",
         {{"formatVersion", "1.0"}, {"archiveVersion", "1.0"}, {"productName", "Product"}, {"archiveName", "Archive"}}},
        {"files", std::move(entries)}};
}

Element elementOf(unsigned number, const Change& change)
{
    Element element;
    element.boardType = ZoCString("T");
    element.id = 1;
    element.version = ZoCVersion("1.0");
    element.hasChecksum = true;
    element.checksumCrc32 = 7;
    element.valid = true;
    element.active = true;
    change(element, number);
    return element;
}

Json targetOf(unsigned count, const Case& data, unsigned first)
{
    Json boards = Json::array();
    for (unsigned i = first; i < first + count; i += data.elementsOfBoard) {
        Json items = Json::array();
        for (unsigned k = 0; k < data.elementsOfBoard && i + k < first + count; ++k) {
            items.push_back(itemOf(elementOf(i + k, data.change), k + 1));
        }
        const auto number = static_cast<unsigned>(boards.size() + 1);
        boards.push_back(boardOf(elementOf(i, data.change), number, std::move(items)));
    }
    return {{"clock", "virtual"}, {"tree", {{"id", "ROOT"}, {"items", std::move(boards)}}}};
}

std::string textOf(const Json& document)
{
    return document.dump(2);
}
