// An output that passes everything on to another one, and tells which whole lines there were.
#pragma once

#include <functional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace TrellanTool {

class LineTap : public std::streambuf {
public:
    // Takes a line without its end and the blanks before that.
    using Take = std::function<void(const std::string&)>;

    // Passes on to `target`, which must outlive the tap. Told are lines that are not blank; of what was written over,
    // by a carriage return, nothing is told. Whether `target` can be written makes no difference.
    LineTap(std::ostream& target, Take take);
    LineTap(const LineTap&) = delete;
    LineTap& operator=(const LineTap&) = delete;

    // What is written here is passed on.
    std::ostream& stream() { return own; }

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize length) override;
    int sync() override;

private:
    void note(std::string_view text);

    std::ostream& target;
    const Take take;
    std::string line;
    std::ostream own;
};

}  // namespace TrellanTool
