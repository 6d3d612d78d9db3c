// The items as they come, one behind the other: what is open is closed when the next one stands higher.
#include "tool/documents/TargetDocument.h"

#include <nlohmann/json.hpp>
#include <ostream>

namespace TrellanTool {

namespace {

using nlohmann::ordered_json;
using ZoNTrellanInspector::ZoTRecordedItem;
using ZoNTrellanInspector::ZoTRecordedParameter;

std::optional<std::string> valueText(const ZoTRecordedParameter& parameter)
{
    return parameter.isText ? jsonString(parameter.text) : std::to_string(parameter.number);
}

class TargetDocument {
public:
    TargetDocument(std::ostream& out, ZoITrellanInspector& inspector) : out(out), inspector(inspector) {}

    std::vector<std::string> write()
    {
        out << "{\n  \"tree\": ";
        const unsigned count = inspector.getRecordedItemCount();
        for (unsigned i = 0; i < count; ++i) {
            const unsigned level = begin(i);
            const unsigned next = i + 1 < count ? inspector.getRecordedItem(i + 1).level : 0;
            if (next > level) {
                out << ",\n" << blanks(level, 1) << "\"items\": [\n" << blanks(next, 0);
            } else {
                end(level, next);
            }
        }
        out << "\n}\n";
        return std::move(omissions);
    }

private:
    static std::string blanks(unsigned level, unsigned deeper)
    {
        return std::string(std::size_t{4} * level + std::size_t{2} * (deeper + 1), ' ');
    }

    // Writes the item up to its parameters and returns its level.
    unsigned begin(unsigned position)
    {
        const ZoTRecordedItem& item = inspector.getRecordedItem(position);
        address.resize(item.level);
        address.push_back(item.id);
        out << "{\n" << blanks(item.level, 1) << "\"id\": " << ordered_json(item.id).dump();
        bool any = false;
        for (unsigned i = 0; i < item.parameterCount; ++i) {
            any |= parameter(inspector.getRecordedParameter(position, i), item.level, any);
        }
        if (any) {
            out << '\n' << blanks(item.level, 1) << '}';
        }
        return item.level;
    }

    // False where there is nothing to be written.
    bool parameter(const ZoTRecordedParameter& parameter, unsigned level, bool hasPrevious)
    {
        const std::optional<std::string> value = valueText(parameter);
        if (!value) {
            omissions.push_back(omissionText(addressText(), parameter.address, "its text is not UTF-8"));
            return false;
        }
        if (hasPrevious) {
            out << ",\n";
        } else {
            out << ",\n" << blanks(level, 1) << "\"parameters\": {\n";
        }
        out << blanks(level, 2) << '"' << parameter.address << "\": " << *value;
        return true;
    }

    // Closes what is open from the level of the last item up to that of the next one.
    void end(unsigned level, unsigned next)
    {
        out << '\n' << blanks(level, 0) << '}';
        for (; level > next; --level) {
            out << '\n' << blanks(level - 1, 1) << "]\n" << blanks(level - 1, 0) << '}';
        }
        if (next > 0) {
            out << ",\n" << blanks(next, 0);
        }
    }

    std::string addressText() const
    {
        std::string text;
        for (const std::string& id : address) {
            text += '/' + id;
        }
        return text;
    }

    std::ostream& out;
    ZoITrellanInspector& inspector;
    std::vector<std::string> address;  // the ids from the root item to the one that is being written
    std::vector<std::string> omissions;
};

}  // namespace

std::vector<std::string> writeTargetDocument(std::ostream& out, ZoITrellanInspector& inspector)
{
    return TargetDocument(out, inspector).write();
}

std::string omissionText(const std::string& item, const std::string& parameter, const std::string& reason)
{
    return "left out: " + (parameter.empty() ? "" : parameter + " of ") + item + ": " + reason;
}

std::optional<std::string> jsonString(const std::string& text)
{
    try {
        return ordered_json(text).dump();
    } catch (const ordered_json::type_error&) {
        return std::nullopt;
    }
}

}  // namespace TrellanTool
