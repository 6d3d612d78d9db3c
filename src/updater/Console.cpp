// Text output: formatted text, tables and error lists.
#include <algorithm>
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
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length > 0) {
        out.resize(static_cast<std::size_t>(length));
        std::vsnprintf(out.data(), out.size() + 1, format, arguments);
    }
    return length;
}

std::vector<std::size_t> columnWidths(const std::vector<std::vector<std::string>>& rows)
{
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], row[column].size());
        }
    }
    return widths;
}

std::size_t ruleLength(const std::vector<std::size_t>& widths)
{
    std::size_t length = 3 * (widths.size() - 1);
    for (const std::size_t width : widths) {
        length += width;
    }
    return length;
}

void printRow(const ZoCTrellanUpdater& updater, const std::vector<std::string>& row,
              const std::vector<std::size_t>& widths)
{
    for (std::size_t column = 0; column < widths.size(); ++column) {
        if (column != 0) {
            updater.print(" | ");
        }
        const char* const cell = column < row.size() ? row[column].c_str() : "";
        updater.print("%-*s", static_cast<int>(widths[column]), cell);
    }
    updater.print("\n");
}

void printRule(const ZoCTrellanUpdater& updater, std::size_t length)
{
    for (std::size_t i = 0; i < length; ++i) {
        updater.print("-");
    }
    updater.print("\n");
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

void ZoCTrellanUpdater::printTable(const std::vector<std::vector<std::string>>& rows) const
{
    const std::vector<std::size_t> widths = columnWidths(rows);
    bool isHeader = true;
    for (const auto& row : rows) {
        printRow(*this, row, widths);
        if (isHeader && !widths.empty()) {
            printRule(*this, ruleLength(widths));
        }
        isHeader = false;
    }
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
