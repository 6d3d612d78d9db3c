// Fuzz entry for the wrapping of error texts: the lines are the text, none is too long, and none is shorter than it
// must be.
#include <algorithm>
#include <vector>

#include "Fuzzing.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "support/OpenUpdater.h"

static std::string printed;

static void checkLines(const std::string& text, std::size_t indent)
{
    const std::size_t width = std::max<std::size_t>(78, indent + 1) - indent;
    std::string_view rest = printed;
    takePart(rest, '\n');  // the line above the text
    std::string whole;
    while (!rest.empty()) {
        const std::string_view line = takePart(rest, '\n');
        require(line.size() > indent + 2 && line.find_first_not_of(' ') >= std::min(indent + 2, line.size()),
                "indented");
        const std::string_view piece = line.substr(indent + 2);
        require(piece.size() <= width, "no line is too long");
        whole += piece;
        const std::string_view further = std::string_view(text).substr(std::min(whole.size(), text.size()));
        const std::string_view fitting = further.substr(0, width - piece.size());
        const std::size_t blank = fitting.rfind(' ');
        require(further.empty() || piece.size() == width || (piece.back() == ' ' && blank == std::string_view::npos),
                "a line ends with the last blank that fits, or is full");
    }
    require(whole == text, "the lines are the text");
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2) {
        return 0;
    }
    const unsigned indent = data[0] % 100;
    ZoNTrellanUpdater::ZoTOptions options;
    options.verbose = data[1] % 2 != 0;
    OpenUpdater updater(options);
    updater.setMessageCallBack([](const std::string& text) { printed += text; });
    ZoSErrorRecord error;
    error.code = data[1];
    error.timeStamp = data[1];
    error.text = textOf(data + 2, size - 2);
    ZoCErrorListPool& errors = ZoCErrorManager::getSingleton()->getMasterErrorList();
    errors.clear();
    errors.addError(error);
    printed.clear();
    updater.printErrorList(errors, indent);
    std::string text = error.text.c_str();
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    checkLines(text, indent);
    return 0;
}
