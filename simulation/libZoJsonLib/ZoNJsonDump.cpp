// The values: printing. What takes more than copying, such as escapes and fractions, is left to a printer that knows
// about it, one value at a time.
#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>

#include "simulation/libZoJsonLib/Access.h"

namespace ZoNJson {

using namespace TrellanSimulation;

namespace {

using Printer = nlohmann::json;

struct Layout {
    int indent;
    char indentChar;
    bool ensureAscii;
    Printer::error_handler_t onInvalidUtf8;
};

// In place of a text, tells how long that becomes.
class TextLength {
public:
    void append(std::string_view piece) { length += piece.size(); }
    void append(std::size_t count, char) { length += count; }

    std::size_t length = 0;
};

bool needsNoEscape(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char character) {
        return character >= ' ' && character < '\x7F' && character != '"' && character != '\\';
    });
}

// Prints behind `text`.
template <class Text>
class Dump {
public:
    Dump(const Layout& layout, Text& text) : layout(layout), text(text) {}

    void add(const json& value)
    {
        if (value.is_array()) {
            addArray(value);
        } else if (value.is_object()) {
            addObject(value);
        } else {
            addScalar(Access::bits(value));
        }
    }

private:
    void addScalar(const JsonBits& bits)
    {
        if (isText(bits)) {
            addText(textOf(bits));
        } else if (isInteger(bits)) {
            addNumber(integerOf(bits));
        } else if (isUnsignedInteger(bits)) {
            addNumber(unsignedIntegerOf(bits));
        } else if (isReal(bits)) {
            addPrinted(realOf(bits));
        } else if (tagOf(bits) == JsonTag::boolean) {
            addPrinted(bits != bitsOf(JsonTag::boolean));
        } else {
            addPrinted(tagOf(bits) == JsonTag::null ? Printer() : Printer(Printer::value_t::discarded));
        }
    }

    void addText(std::string_view value)
    {
        if (!needsNoEscape(value)) {
            addPrinted(value);
            return;
        }
        text.append("\"");
        text.append(value);
        text.append("\"");
    }

    template <class Number>
    void addNumber(Number number)
    {
        std::array<char, 20> digits;
        const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        text.append(std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())));
    }

    void addPrinted(const Printer& value)
    {
        text.append(value.dump(-1, ' ', layout.ensureAscii, layout.onInvalidUtf8));
    }

    void addArray(const json& array)
    {
        const char* separator = "[";
        for (const json& element : array) {
            begin(separator);
            add(element);
            --level;
            separator = ",";
        }
        end(separator, "[]", ']');
    }

    void addObject(const json& object)
    {
        const char* separator = "{";
        visitMembers(object, [&](std::string_view key, const json& value) {
            begin(separator);
            addText(key);
            text.append(layout.indent < 0 ? ":" : ": ");
            add(value);
            --level;
            separator = ",";
        });
        end(separator, "{}", '}');
    }

    // In the order of the keys.
    template <typename Visit>
    static void visitMembers(const json& object, const Visit& visit)
    {
        if (Access::tag(object) == JsonTag::ownObject) {
            for (const auto& [key, member] : Access::own<Members>(object).content) {
                visit(key, member);
            }
            return;
        }
        const JsonValues values = valuesOf(Access::bits(object));
        for (std::size_t i = 0; i < values.count; i += 2) {
            visit(textOf(values.first[i]), Access::part(values.first[i + 1]));
        }
    }

    // In front of an element or member, one level deeper.
    void begin(const char* separator)
    {
        text.append(separator);
        ++level;
        startLine();
    }

    // Behind the last one; `empty` stands for all when there was none.
    void end(const char* separator, const char* empty, char bracket)
    {
        if (*separator != ',') {
            text.append(empty);
            return;
        }
        startLine();
        text.append(1, bracket);
    }

    void startLine()
    {
        if (layout.indent >= 0) {
            text.append("\n");
            text.append(level * static_cast<std::size_t>(layout.indent), layout.indentChar);
        }
    }

    const Layout& layout;
    Text& text;
    std::size_t level = 0;
};

}  // namespace

// Twice over: a text that grows would for a while be there twice. There is room behind it for a line end.
std::string json::dump(int indent, char indentChar, bool ensureAscii, error_handler onInvalidUtf8) const
{
    const Layout layout{indent, indentChar, ensureAscii, static_cast<Printer::error_handler_t>(onInvalidUtf8)};
    try {
        TextLength needed;
        Dump(layout, needed).add(*this);
        std::string text;
        text.reserve(needed.length + 1);
        Dump(layout, text).add(*this);
        return text;
    } catch (const Printer::type_error& error) {
        throw type_error(error.what());
    }
}

}  // namespace ZoNJson
