// The pieces are laid out one by one, so that together they look like one value that is printed.
#include "tool/documents/DocumentWriter.h"

#include <ostream>

#include "json/Json.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

std::string dumped(const ordered_json& value)
{
    return value.dump(2, ' ', false, ordered_json::error_handler_t::replace);
}

// The value as it stands where lines begin with `indentation` blanks more. Within strings there are no line ends.
std::string indented(const ordered_json& value, std::size_t indentation)
{
    const std::string text = dumped(value);
    std::string result;
    result.reserve(text.size() + text.size() / 4);
    for (const char character : text) {
        result += character;
        if (character == '\n') {
            result.append(indentation, ' ');
        }
    }
    return result;
}

}  // namespace

DocumentWriter::DocumentWriter(Sink sink, const std::string& command) : sink(std::move(sink))
{
    begin(command);
}

DocumentWriter::DocumentWriter(std::ostream& stream, const std::string& command)
    : sink([&stream](std::string_view text) { stream << text; })
{
    begin(command);
}

void DocumentWriter::begin(const std::string& command)
{
    sink("{\n  \"schemaVersion\": 1");
    member("command", command);
}

void DocumentWriter::key(const char* name)
{
    sink(",\n  \"");
    sink(name);
    sink("\": ");
}

void DocumentWriter::member(const char* name, const ordered_json& value)
{
    key(name);
    sink(indented(value, 2));
}

void DocumentWriter::error(const DocumentError* error)
{
    if (error != nullptr) {
        member("error", {{"status", error->status}, {"message", error->message}});
    }
}

void DocumentWriter::list(const char* name, unsigned count, const std::function<ordered_json(unsigned)>& value)
{
    if (count == 0) {
        member(name, ordered_json::array());
        return;
    }
    key(name);
    for (unsigned i = 0; i < count; ++i) {
        sink(i == 0 ? "[\n    " : ",\n    ");
        sink(indented(value(i), 4));
    }
    sink("\n  ]");
}

void DocumentWriter::end()
{
    sink("\n}\n");
}

std::string documentText(const ordered_json& content)
{
    return dumped(content) + "\n";
}

std::string compactText(const ordered_json& content)
{
    return content.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

}  // namespace TrellanTool
