#include "tool/update/LineTap.h"

#include <utility>

namespace TrellanTool {

LineTap::LineTap(std::ostream& target, Take take) : target(target), take(std::move(take)), own(this)
{
    own.exceptions(std::ios::badbit);  // what is thrown by `take` passes through
}

LineTap::int_type LineTap::overflow(int_type character)
{
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        const char text = traits_type::to_char_type(character);
        xsputn(&text, 1);
    }
    return traits_type::not_eof(character);
}

std::streamsize LineTap::xsputn(const char* text, std::streamsize length)
{
    target.write(text, length);
    note({text, static_cast<std::size_t>(length)});
    return length;
}

int LineTap::sync()
{
    target.flush();
    return 0;
}

void LineTap::note(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\n\r");
        line.append(text.substr(0, end));
        if (end == std::string_view::npos) {
            return;
        }
        std::string whole = std::exchange(line, "");
        whole.erase(whole.find_last_not_of(' ') + 1);
        if (text[end] == '\n' && !whole.empty()) {
            take(whole);
        }
        text.remove_prefix(end + 1);
    }
}

}  // namespace TrellanTool
