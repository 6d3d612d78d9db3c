// A document built from the parser's events, its members in the order in which they are written.
#include "simulation/libZoInventoryTree/DocumentBuilder.h"

#include <array>
#include <istream>
#include <streambuf>
#include <string>
#include <unordered_map>
#include <vector>

namespace TrellanSimulation {

namespace {

// Objects and arrays within each other. The deepest tree there may be has two for each level of items, and some around
// them and in them.
constexpr std::size_t maxDepth = 1030;

// Gives a file's bytes to the parser, which would take a NUL byte for the end of the document.
class DocumentBytes : public std::streambuf {
public:
    DocumentBytes(RegularFile& file, std::string* text) : file(file), text(text) {}

protected:
    int_type underflow() override
    {
        const std::size_t length = file.read(block.data(), block.size());
        if (length == 0) {
            return traits_type::eof();
        }
        if (std::string_view(block.data(), length).find('\0') != std::string_view::npos) {
            throw DocumentFault("it holds a NUL byte");
        }
        if (text != nullptr) {
            text->append(block.data(), length);
        }
        setg(block.data(), block.data(), block.data() + length);
        return traits_type::to_int_type(block.front());
    }

private:
    RegularFile& file;
    std::string* text;
    std::array<char, 1 << 16> block;
};

// The parser's message without its leading "[...] " mark.
std::string parserMessage(const nlohmann::json::exception& exception)
{
    const std::string text = exception.what();
    const auto mark = text.find("] ");
    return mark == std::string::npos ? text : text.substr(mark + 2);
}

// Objects that keep their order search a member from the first one on: with its own way of adding members the parser
// would need a time that grows with their number squared. Here an index tells where they are.
class DocumentBuilder : public nlohmann::json_sax<Json> {
public:
    Json take() { return std::move(document); }

    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override { return add(value); }
    bool number_float(number_float_t value, const string_t&) override { return add(value); }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t& value) override { return add(std::move(value)); }
    bool start_object(std::size_t) override { return open(Json::object()); }
    bool start_array(std::size_t) override { return open(Json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t& name) override
    {
        Level& level = levels.back();
        auto& members = level.value->get_ref<Json::object_t&>();
        const auto [found, isNew] = level.positions.try_emplace(name, members.size());
        if (isNew) {
            members.Container::emplace_back(std::move(name), nullptr);
        }
        level.member = &members.Container::operator[](found->second).second;
        return true;
    }

    [[noreturn]] bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception& exception) override
    {
        throw DocumentFault(parserMessage(exception));
    }

private:
    // An object or array that is not complete.
    struct Level {
        Json* value = nullptr;
        Json* member = nullptr;  // whose value comes next
        std::unordered_map<std::string, std::size_t> positions;
    };

    // Where the next value belongs.
    Json& place()
    {
        if (levels.empty()) {
            return document;
        }
        const Level& level = levels.back();
        return level.value->is_array() ? level.value->emplace_back() : *level.member;
    }

    bool add(Json value)
    {
        place() = std::move(value);
        return true;
    }

    bool open(Json value)
    {
        if (levels.size() == maxDepth) {
            throw DocumentFault("nested more than " + std::to_string(maxDepth) + " levels deep");
        }
        Json& opened = place();
        opened = std::move(value);
        levels.push_back({&opened, nullptr, {}});
        return true;
    }

    bool close()
    {
        levels.pop_back();
        return true;
    }

    Json document;
    std::vector<Level> levels;
};

}  // namespace

Json parseDocument(RegularFile& file, std::string* text)
{
    DocumentBytes bytes(file, text);
    std::istream stream(&bytes);
    DocumentBuilder builder;
    Json::sax_parse(stream, &builder);
    return builder.take();
}

}  // namespace TrellanSimulation
