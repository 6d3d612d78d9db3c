// The values: printing.
#include <nlohmann/json.hpp>

#include "simulation/libZoJsonLib/Access.h"

namespace ZoNJson {

namespace {

using Printer = nlohmann::json;

Printer printerValue(const json& value);

Printer printerArray(const json& value)
{
    Printer array = Printer::array();
    for (const json& element : value) {
        array.push_back(printerValue(element));
    }
    return array;
}

Printer printerObject(const json& value)
{
    Printer object = Printer::object();
    for (const auto& [key, member] : Access::content<Members>(value)) {
        object.emplace(key, printerValue(member));
    }
    return object;
}

// The value as the printer knows it.
Printer printerValue(const json& value)
{
    switch (Access::kind(value)) {
        case Access::Kind::null:
            return nullptr;
        case Access::Kind::boolean:
            return Access::scalar(value).boolean;
        case Access::Kind::integer:
            return Access::scalar(value).integer;
        case Access::Kind::unsignedInteger:
            return Access::scalar(value).unsignedInteger;
        case Access::Kind::real:
            return Access::scalar(value).real;
        case Access::Kind::string:
            return Access::content<Text>(value);
        case Access::Kind::array:
            return printerArray(value);
        case Access::Kind::object:
            return printerObject(value);
        case Access::Kind::invalid:
            break;
    }
    return Printer::value_t::discarded;
}

}  // namespace

std::string json::dump(int indent, char indentChar, bool ensureAscii, error_handler onInvalidUtf8) const
{
    try {
        return printerValue(*this).dump(indent, indentChar, ensureAscii,
                                        static_cast<Printer::error_handler_t>(onInvalidUtf8));
    } catch (const Printer::type_error& error) {
        throw type_error(error.what());
    }
}

}  // namespace ZoNJson
