// Text output: formatted text, tables and error lists.
#include <algorithm>
#include <array>
#include <cstdio>

#include "base/ErrorManager.h"
#include "base/TextWrap.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;

namespace {

constexpr unsigned textWidth = 78;  // of 80 columns, less the two by which an error's text is indented further

// Formats into `out`, which is empty, and returns the number of characters, negative when `format` cannot be used.
int formatText(std::string& out, const char* format, va_list arguments)
{
    std::array<char, 256> buffer;  // which most texts fit into
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(buffer.data(), buffer.size(), format, measured);
    va_end(measured);
    if (length <= 0) {
        return length;
    }
    const auto size = static_cast<std::size_t>(length);
    if (size < buffer.size()) {
        out.assign(buffer.data(), size);
    } else {
        out.resize(size);
        std::vsnprintf(out.data(), size + 1, format, arguments);
    }
    return length;
}

std::size_t ruleLength(const std::vector<std::size_t>& widths)
{
    std::size_t length = 3 * (widths.size() - 1);
    for (const std::size_t width : widths) {
        length += width;
    }
    return length;
}

}  // namespace

int ZoCTrellanUpdater::print(const char* format, ...) const
{
    va_list arguments;
    va_start(arguments, format);
    const int length = vprint(format, arguments);
    va_end(arguments);
    return length;
}

int ZoCTrellanUpdater::vprint(const char* format, va_list arguments) const
{
    if (messageCallBack == nullptr) {
        const int length = std::vfprintf(stdout, format, arguments);
        std::fflush(stdout);
        return length;
    }
    std::string text;
    const int length = formatText(text, format, arguments);
    if (length > 0) {
        messageCallBack(text);
    }
    return length;
}

void ZoCTrellanUpdater::printText(const std::string& text) const
{
    if (messageCallBack == nullptr) {
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fflush(stdout);
    } else if (!text.empty()) {
        messageCallBack(text);
    }
}

int ZoCTrellanUpdater::sprint(std::string& out, const char* format, ...) const
{
    va_list arguments;
    va_start(arguments, format);
    std::string text;  // `out` may be among the arguments
    const int length = formatText(text, format, arguments);
    va_end(arguments);
    out = std::move(text);
    return length;
}

void ZoCTrellanUpdater::printTable(const TableText& table) const
{
    const std::vector<std::size_t>& widths = table.columnWidths();
    bool isHeader = true;
    table.forEachRow([&](TableText::Cells& cells) {
        printRow(cells, widths);
        if (isHeader && !widths.empty()) {
            printRule(ruleLength(widths));
        }
        isHeader = false;
    });
}

// Large tables are printed at the cost of what is in them: nothing is formatted.
void ZoCTrellanUpdater::printRow(TableText::Cells& cells, const std::vector<std::size_t>& widths) const
{
    static const std::string separator = " | ";
    static const std::string end = "\n";
    std::string cell;
    for (std::size_t column = 0; column < widths.size(); ++column) {
        if (column != 0) {
            printText(separator);
        }
        cell = cells.take();
        cell.resize(std::max(cell.size(), widths[column]), ' ');
        printText(cell);
    }
    printText(end);
}

void ZoCTrellanUpdater::printRule(std::size_t length) const
{
    for (std::size_t i = 0; i < length; ++i) {
        print("-");
    }
    print("\n");
}

void ZoCTrellanUpdater::printErrorList(const ZoCErrorListPool& errors, unsigned indent) const
{
    for (unsigned i = 0; i < errors.getErrorCount(); ++i) {
        printError(errors, i, indent);
    }
}

void ZoCTrellanUpdater::printError(const ZoCErrorListPool& errors, unsigned index, unsigned indent) const
{
    const int blanks = static_cast<int>(indent);
    if (const unsigned originNode = errors.getOriginNode(index); originNode != 0) {
        print("%*sERROR %#x (reported by S/N %u)", blanks, "", errors.getErrorCode(index), originNode);
    } else {
        print("%*sERROR %#x (reported by Host PC)", blanks, "", errors.getErrorCode(index));
    }
    if (options.verbose) {
        printErrorDetails(errors, index);
    }
    print(":\n");

    std::string text = errors.getErrorText(index);
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::replace(text.begin(), text.end(), '\r', ' ');
    const unsigned width = indent < textWidth ? textWidth - indent : 1;
    for (const std::string_view piece : wrapText(text, width)) {
        print("%*s%s\n", blanks + 2, "", std::string(piece).c_str());
    }
}

void ZoCTrellanUpdater::printErrorDetails(const ZoCErrorListPool& errors, unsigned index) const
{
    if (const auto timeStamp = errors.getTimeStamp(index); timeStamp != 0) {
        print(", time % 4.3f sec.", static_cast<double>(timeStamp) * errorManager().getTimeStampFactor());
    }
    const unsigned mainModule = errors.getMainModuleNumber(index);
    const unsigned subModule = errors.getSubModuleNumber(index);
    if (mainModule != 0 || subModule != 0) {
        print(", module %u/%u", mainModule, subModule);
    }
    const char* const function = errors.getFunctionName(index);
    if (function != nullptr && *function != '\0') {
        print(", in %s():%u", function, errors.getLineNumber(index));
    }
}
