// A form is the finding's text with a mark in place of each number. A finding whose text is no other's is kept whole,
// as is the first of each text: which texts are said again shows only then.
#include "base/FindingForms.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>
#include <system_error>
#include <utility>

using namespace ZoNTrellanInspector;

namespace ZoNUpdateBase {
namespace {

constexpr std::size_t noForm = 0;
constexpr std::size_t longestForm = 500;  // in bytes

// Texts of the description's own may be said again, too. What they use up comes back with the findings.
constexpr std::size_t mostFormsAtFirst = 2000;
constexpr std::size_t findingsForAForm = 256;

// In the text of a form.
constexpr char numberMark = 1, entryMark = 2, boardMark = 3, endMark = 4;

// As values, so that they cost no call.
constexpr auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
constexpr auto isMark = [](char character) { return character >= numberMark && character <= endMark; };

// The number that has been written as these digits.
std::optional<std::uint64_t> plainNumber(const char* first, const char* last)
{
    std::uint64_t number = 0;
    const bool fits = std::from_chars(first, last, number).ec == std::errc();
    return fits && (*first != '0' || last - first == 1) ? std::optional(number) : std::nullopt;
}

// -1 is none.
bool isPosition(std::uint64_t number, std::int32_t position)
{
    return position >= 0 && number == static_cast<std::uint64_t>(position);
}

void addForm(std::string& form, std::vector<std::uint64_t>& numbers, std::string_view text, const ZoTFinding& finding)
{
    const char* const textEnd = text.data() + text.size();
    for (const char* at = text.data(); at != textEnd;) {
        const char* const digits = std::find_if(at, textEnd, isDigit);
        form.append(at, digits);
        at = std::find_if_not(digits, textEnd, isDigit);
        if (digits == at) {
            break;
        }
        const std::optional<std::uint64_t> number = plainNumber(digits, at);
        if (!number) {
            form.append(digits, at);
        } else if (isPosition(*number, finding.entry)) {
            form += entryMark;
        } else if (isPosition(*number, finding.board)) {
            form += boardMark;
        } else {
            form += numberMark;
            numbers.push_back(*number);
        }
    }
    form += endMark;
}

// Takes the part up to the next end off the front of `form`, with the numbers in their places.
void takeText(std::string& text, std::string_view& form, PackedReader& numbers, const ZoTFinding& finding)
{
    text.clear();
    for (;;) {
        const char* const mark = std::find_if(form.data(), form.data() + form.size(), isMark);
        text.append(form.data(), mark);
        form.remove_prefix(static_cast<std::size_t>(mark - form.data()) + 1);
        switch (*mark) {
            case entryMark:
                text += std::to_string(finding.entry);
                break;
            case boardMark:
                text += std::to_string(finding.board);
                break;
            case numberMark:
                text += std::to_string(numbers.number());
                break;
            default:
                return;
        }
    }
}

}  // namespace

std::size_t FindingForms::mostForms() const
{
    return mostFormsAtFirst + count / findingsForAForm;
}

std::size_t FindingForms::numberOfForm()
{
    if (form.size() > longestForm) {
        return noForm;
    }
    if (const auto found = formNumbers.find(form); found != formNumbers.end()) {
        return found->second;
    }
    const std::size_t hash = std::hash<std::string>()(form);
    if (std::exchange(seen[hash % seen.size()], hash) != hash || forms.size() >= mostForms()) {
        return noForm;
    }
    forms.push_back({form, numbers.size()});
    return formNumbers.emplace(form, forms.size()).first->second;
}

void FindingForms::add(std::string& bytes, const ZoTFinding& finding)
{
    ++count;
    form.clear();
    numbers.clear();
    const bool hasMarks = std::any_of(finding.pointer.begin(), finding.pointer.end(), isMark) ||
                          std::any_of(finding.message.begin(), finding.message.end(), isMark);
    if (!hasMarks) {
        form += static_cast<char>('0' + static_cast<int>(finding.severity));
        for (const std::string* const text : {&finding.rule, &finding.pointer, &finding.message}) {
            addForm(form, numbers, *text, finding);
        }
    }
    const std::size_t number = hasMarks ? noForm : numberOfForm();
    addNumber(bytes, number);
    if (number == noForm) {
        addNumber(bytes, static_cast<std::uint64_t>(finding.severity));
        addText(bytes, finding.rule);
        addText(bytes, finding.pointer);
        addText(bytes, finding.message);
    } else {
        for (const std::uint64_t each : numbers) {
            addNumber(bytes, each);
        }
    }
}

void FindingForms::take(PackedReader& bytes, ZoTFinding& finding) const
{
    const std::size_t number = bytes.number();
    if (number == noForm) {
        finding.severity = static_cast<ZoTSeverity>(bytes.number());
        finding.rule = bytes.text();
        finding.pointer = bytes.text();
        finding.message = bytes.text();
        return;
    }
    std::string_view text = forms[number - 1].text;
    finding.severity = static_cast<ZoTSeverity>(text.front() - '0');
    text.remove_prefix(1);
    takeText(finding.rule, text, bytes, finding);
    takeText(finding.pointer, text, bytes, finding);
    takeText(finding.message, text, bytes, finding);
}

void FindingForms::skip(PackedReader& bytes) const
{
    const std::size_t number = bytes.number();
    if (number == noForm) {
        bytes.number();
        bytes.text();
        bytes.text();
        bytes.text();
        return;
    }
    for (std::size_t i = 0; i < forms[number - 1].numberCount; ++i) {
        bytes.number();
    }
}

}  // namespace ZoNUpdateBase
