// The text of a JSON document, written piece by piece: a document about 100,000 elements never stands in memory whole.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "json/JsonForward.h"

namespace TrellanTool {

// What a command ended with, where that needs words.
struct DocumentError {
    int status = 0;       // the exit status
    std::string message;  // what was said on standard error
};

// Writes an object whose first members are "schemaVersion", 1, and "command". Its text is that of documentText().
class DocumentWriter {
public:
    using Sink = std::function<void(std::string_view)>;

    // Each piece of text goes to `sink`, or to `stream`, which must outlive the writer.
    DocumentWriter(Sink sink, const std::string& command);
    DocumentWriter(std::ostream& stream, const std::string& command);

    void member(const char* name, const TrellanJson::ordered_json& value);

    // The member "error"; null: there is none.
    void error(const DocumentError* error);

    // An array of `count` values, each made when its turn has come.
    void list(const char* name, unsigned count, const std::function<TrellanJson::ordered_json(unsigned)>& value);

    // Ends the document, with a line end. To be called once, last.
    void end();

private:
    void begin(const std::string& command);
    void key(const char* name);

    const Sink sink;
};

// The text of a document, as all of them are printed: with a line end, bytes that are not UTF-8 replaced by U+FFFD.
std::string documentText(const TrellanJson::ordered_json& content);

// The same on one line, without blanks and line end.
std::string compactText(const TrellanJson::ordered_json& content);

}  // namespace TrellanTool
