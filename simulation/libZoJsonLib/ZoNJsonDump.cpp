// The values: printing. The printer that knows about numbers and strings gets one of them at a time, never a document.
#include <nlohmann/json.hpp>

#include "simulation/libZoJsonLib/Access.h"

namespace ZoNJson {

using namespace TrellanSimulation;

namespace {

using Printer = nlohmann::json;

class Dump {
public:
    Dump(int indent, char indentChar, bool ensureAscii, error_handler onInvalidUtf8)
        : indent(indent),
          indentChar(indentChar),
          ensureAscii(ensureAscii),
          onInvalidUtf8(static_cast<Printer::error_handler_t>(onInvalidUtf8))
    {
    }

    void add(const json& value)
    {
        if (value.is_array()) {
            addArray(value);
        } else if (value.is_object()) {
            addObject(value);
        } else {
            addScalar(scalar(Access::bits(value)));
        }
    }

    std::string take() { return std::move(text); }

private:
    static Printer scalar(const JsonBits& bits)
    {
        if (isText(bits)) {
            return textOf(bits);
        }
        if (isInteger(bits)) {
            return integerOf(bits);
        }
        if (isUnsignedInteger(bits)) {
            return unsignedIntegerOf(bits);
        }
        if (isReal(bits)) {
            return realOf(bits);
        }
        if (tagOf(bits) == JsonTag::boolean) {
            return bits != bitsOf(JsonTag::boolean);
        }
        return tagOf(bits) == JsonTag::null ? Printer() : Printer(Printer::value_t::discarded);
    }

    void addScalar(const Printer& value) { text += value.dump(-1, ' ', ensureAscii, onInvalidUtf8); }

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
            addScalar(key);
            text += indent < 0 ? ":" : ": ";
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
        text += separator;
        ++level;
        startLine();
    }

    // Behind the last one; `empty` stands for all when there was none.
    void end(const char* separator, const char* empty, char bracket)
    {
        if (*separator != ',') {
            text += empty;
            return;
        }
        startLine();
        text += bracket;
    }

    void startLine()
    {
        if (indent >= 0) {
            text += '\n';
            text.append(level * static_cast<std::size_t>(indent), indentChar);
        }
    }

    const int indent;
    const char indentChar;
    const bool ensureAscii;
    const Printer::error_handler_t onInvalidUtf8;
    std::size_t level = 0;
    std::string text;
};

}  // namespace

std::string json::dump(int indent, char indentChar, bool ensureAscii, error_handler onInvalidUtf8) const
{
    try {
        Dump dump(indent, indentChar, ensureAscii, onInvalidUtf8);
        dump.add(*this);
        return dump.take();
    } catch (const Printer::type_error& error) {
        throw type_error(error.what());
    }
}

}  // namespace ZoNJson
