// What is open is closed when the next item stands higher.
#include "tool/documents/TargetDocument.h"

#include <ostream>

#include "json/Json.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

// What a line begins with that stands `deeper` steps within the braces of an item of this level.
std::string blanks(std::size_t level, unsigned deeper)
{
    return std::string(4 * level + std::size_t{2} * (deeper + 1), ' ');
}

}  // namespace

void TargetDocument::item(unsigned level, const std::string& id)
{
    endParameters();
    if (open.empty()) {
        out << "{\n  \"tree\": {\n";
    } else if (level == open.size()) {
        out << ",\n" << blanks(level - 1, 1) << "\"items\": [\n" << blanks(level, 0) << "{\n";
    } else {
        endItems(level);
        out << ",\n" << blanks(level, 0) << "{\n";
    }
    open.resize(level);
    open.push_back(id);
    out << blanks(level, 1) << "\"id\": " << ordered_json(id).dump();
}

bool TargetDocument::text(const std::string& address, const std::string& value)
{
    try {
        parameter(address, ordered_json(value).dump());
        return true;
    } catch (const ordered_json::type_error&) {
        return false;
    }
}

void TargetDocument::number(const std::string& address, std::uint32_t value)
{
    parameter(address, std::to_string(value));
}

void TargetDocument::end()
{
    endParameters();
    endItems(0);
    out << "\n}\n";
}

std::string TargetDocument::address() const
{
    std::string text;
    for (const std::string& id : open) {
        text += '/' + id;
    }
    return text;
}

void TargetDocument::parameter(const std::string& address, const std::string& value)
{
    const std::size_t level = open.size() - 1;
    out << ",\n";
    if (!hasParameters) {
        out << blanks(level, 1) << "\"parameters\": {\n";
    }
    out << blanks(level, 2) << ordered_json(address).dump() << ": " << value;
    hasParameters = true;
}

void TargetDocument::endParameters()
{
    if (hasParameters) {
        out << '\n' << blanks(open.size() - 1, 1) << '}';
    }
    hasParameters = false;
}

// Ends the last item and those that it is in, up to one of this level.
void TargetDocument::endItems(std::size_t level)
{
    std::size_t last = open.size() - 1;
    out << '\n' << blanks(last, 0) << '}';
    for (; last > level; --last) {
        out << '\n' << blanks(last - 1, 1) << "]\n" << blanks(last - 1, 0) << '}';
    }
}

std::vector<std::string> writeTargetDocument(std::ostream& out, ZoITrellanInspector& inspector)
{
    TargetDocument document(out);
    std::vector<std::string> omissions;
    for (unsigned i = 0; i < inspector.getRecordedItemCount(); ++i) {
        const ZoNTrellanInspector::ZoTRecordedItem& item = inspector.getRecordedItem(i);
        document.item(item.level, item.id);
        for (unsigned j = 0; j < item.parameterCount; ++j) {
            const ZoNTrellanInspector::ZoTRecordedParameter& parameter = inspector.getRecordedParameter(i, j);
            if (!parameter.isText) {
                document.number(parameter.address, parameter.number);
            } else if (!document.text(parameter.address, parameter.text)) {
                omissions.push_back(omissionText(document.address(), parameter.address, "its text is not UTF-8"));
            }
        }
    }
    document.end();
    return omissions;
}

std::string omissionText(const std::string& item, const std::string& parameter, const std::string& reason)
{
    return "left out: " + (parameter.empty() ? "" : parameter + " of ") + item + ": " + reason;
}

}  // namespace TrellanTool
