// The values: parsing.
#include <nlohmann/json.hpp>

#include "simulation/libZoJsonLib/Access.h"
#include "simulation/libZoJsonLib/DocumentText.h"

namespace ZoNJson {

namespace {

constexpr std::size_t maxDepth = 512;  // values are copied, printed and released level by level on the stack

using Events = nlohmann::json_sax<nlohmann::json>;

// Builds the value from the parser's events. Each handler says whether to go on.
class Builder final : public Events {
public:
    json takeRoot() { return std::move(root); }

    bool null() override { return add(json()); }
    bool boolean(bool value) override { return add(json(value)); }
    bool number_integer(number_integer_t value) override
    {
        return add(Access::make(Access::Kind::integer, {.integer = value}));
    }
    bool number_unsigned(number_unsigned_t value) override
    {
        return add(Access::make(Access::Kind::unsignedInteger, {.unsignedInteger = value}));
    }
    bool number_float(number_float_t value, const string_t&) override
    {
        return add(Access::make(Access::Kind::real, {.real = value}));
    }
    bool string(string_t& value) override { return add(json(value)); }
    bool binary(binary_t&) override { return false; }

    bool start_object(std::size_t) override { return open(json::object()); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(json::array()); }
    bool end_array() override { return close(); }

    bool key(string_t& name) override
    {
        member = &Access::content<Members>(containers.back())[name];
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) override { return false; }

private:
    bool add(json value)
    {
        if (containers.empty()) {
            root = std::move(value);
        } else if (containers.back().is_array()) {
            Access::content<Elements>(containers.back()).push_back(std::move(value));
        } else {
            *member = std::move(value);
        }
        return true;
    }

    bool open(const json& container)
    {
        if (containers.size() == maxDepth) {
            return false;
        }
        add(container);
        containers.push_back(container);
        return true;
    }

    bool close()
    {
        containers.pop_back();
        return true;
    }

    json root;
    std::vector<json> containers;  // those that are open, from the outermost inwards; they share the nodes of root
    json* member = nullptr;        // where the value after the last key goes
};

}  // namespace

json json::parse(std::FILE* stream)
{
    Builder builder;
    const auto text = readDocumentText(stream);
    if (text && nlohmann::json::sax_parse(*text, &builder, nlohmann::json::input_format_t::json, true)) {
        return builder.takeRoot();
    }
    return Access::make(Kind::invalid);
}

}  // namespace ZoNJson
