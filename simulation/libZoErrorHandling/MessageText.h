// The text of a message, made of its registered text and its arguments.
#pragma once

#include <cstdarg>
#include <string>
#include <vector>

namespace MessageText {

using Arguments = std::vector<std::string>;

// As %x writes it.
std::string hexadecimal(unsigned number);

// The text of each argument that `format` (null: none) has a conversion for: %s, %d, %i, %u, %x or %c. Ends at the
// first conversion of another kind, since the size of its argument is not known.
Arguments formatArguments(const char* format, va_list values);

// `text` with %1, %2, ... replaced by the arguments. A number without an argument stays as it is written.
std::string fillIn(const std::string& text, const Arguments& arguments);

// The text registered for `code`, with its arguments; the arguments alone, separated by blanks, when there is none.
std::string compose(unsigned code, const Arguments& arguments);

}  // namespace MessageText
