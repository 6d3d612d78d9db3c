// The arguments, formatted like printf, in the places that the registered text has for them.
#include "simulation/libZoErrorHandling/MessageText.h"

#include <cstring>
#include <string_view>

#include "simulation/libZoErrorHandling/MessageTables.h"

namespace MessageText {

namespace {

std::string textOrNull(const char* text)
{
    return text == nullptr ? "(null)" : text;
}

std::string join(const Arguments& arguments)
{
    std::string text;
    for (const std::string& argument : arguments) {
        text += (text.empty() ? "" : " ") + argument;
    }
    return text;
}

}  // namespace

std::string hexadecimal(unsigned number)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    do {
        text.insert(text.begin(), digits[number % digits.size()]);
        number /= static_cast<unsigned>(digits.size());
    } while (number != 0);
    return text;
}

Arguments formatArguments(const char* format, va_list values)
{
    Arguments arguments;
    for (const char* at = format; at != nullptr && (at = std::strchr(at, '%')) != nullptr;) {
        const char conversion = at[1];
        if (conversion == 's') {
            arguments.push_back(textOrNull(va_arg(values, const char*)));
        } else if (conversion == 'd' || conversion == 'i') {
            arguments.push_back(std::to_string(va_arg(values, int)));
        } else if (conversion == 'u') {
            arguments.push_back(std::to_string(va_arg(values, unsigned)));
        } else if (conversion == 'x') {
            arguments.push_back(hexadecimal(va_arg(values, unsigned)));
        } else if (conversion == 'c') {
            arguments.push_back(std::string(1, static_cast<char>(va_arg(values, int))));
        } else if (conversion != '%') {
            break;
        }
        at += 2;
    }
    return arguments;
}

std::string fillIn(const std::string& text, const Arguments& arguments)
{
    std::string filled;
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = at + 1;
        std::size_t number = 0;
        if (text[at] == '%') {
            for (; end < text.size() && text[end] >= '0' && text[end] <= '9' && number <= arguments.size(); ++end) {
                number = number * 10 + static_cast<std::size_t>(text[end] - '0');
            }
        }
        const bool known = number >= 1 && number <= arguments.size();
        filled += known ? arguments[number - 1] : text.substr(at, end - at);
        at = end;
    }
    return filled;
}

std::string compose(unsigned code, const Arguments& arguments)
{
    const auto text = MessageTables::findText(code);
    return text ? fillIn(*text, arguments) : join(arguments);
}

}  // namespace MessageText
