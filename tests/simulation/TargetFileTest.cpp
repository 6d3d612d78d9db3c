#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>

#include "Device.h"
#include "support/SimulatedTarget.h"
#include "support/TempDir.h"

using nlohmann::ordered_json;

namespace {

// A target file with every member that there is.
ordered_json fullDocument()
{
    return ordered_json::parse(R"({
        "clock": "virtual",
        "bytesPerSecond": 1000,
        "tree": {
            "id": "ROOT",
            "items": [
                { "id": "HCN",
                  "parameters": { "PRODUCT/NAME": "Processor board", "PRODUCT/SERIAL_NUMBER": 16777232 },
                  "items": [
                    { "id": "UPDATE_INFO",
                      "items": [ { "id": "UPDATE_ELEMENT[1]", "parameters": { "ID": 1, "VERSION": "23.1" } } ] } ] } ]
        },
        "script": {
            "scan": [ { "result": 0, "errors": [ { "code": 1, "text": "noise", "originNode": 1, "timeStamp": 2,
                "mainModule": 3, "subModule": 4, "function": "read", "line": 5 } ] } ],
            "values": { "/ROOT/HCN:PRODUCT/NAME": [ { "code": 2, "text": "cannot read" } ] },
            "lock": [ {} ], "updateFinish": [ {} ], "unlock": [ { "errors": [ { "code": 3, "text": "busy" } ] } ],
            "elements": { "/ROOT/HCN#1": {
                "start": [ {} ],
                "polls": [ { "status": 1, "done": 5, "total": 10 }, { "errors": [] } ],
                "finish": [ { "errors": [], "results": [ { "code": 5, "text": "verify" } ] } ] } }
        }
    })");
}

// The text of the error of a scan that is expected to fail; empty when there is not exactly one.
std::string scanFault()
{
    testing::internal::CaptureStderr();
    const Scan scan;
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_NE(scan.result, 0);
    EXPECT_EQ(scan.tree, nullptr);
    if (scan.errors.count() != 1 || scan.errors.code(0) != 0x26300007) {
        return "";
    }
    EXPECT_EQ(printed, "ERROR 0x26300007: " + scan.errors.text(0) + "\n");
    return scan.errors.text(0);
}

// The place and reason that reading `document` reports.
std::string faultOf(const ordered_json& document)
{
    const SimulatedTarget device(document);
    const std::string text = scanFault();
    const std::string start = "The target file " + device.path().string() + " cannot be read: ";
    EXPECT_EQ(text.substr(0, start.size()), start);
    EXPECT_EQ(text.back(), '.');
    return text.substr(start.size(), text.size() - start.size() - 1);
}

// The same for a file with the content `text`.
std::string faultOfText(const std::string& text)
{
    const SimulatedTarget device(ordered_json::object());
    std::ofstream(device.path(), std::ios::binary) << text;
    const std::string fault = scanFault();
    return fault.substr(0, fault.size() - 1).substr(("The target file " + device.path().string()).size());
}

struct Edit {
    const char* pointer;      // to the edited value
    const char* replacement;  // JSON; null: the value is removed
    const char* fault;
};

void PrintTo(const Edit& edit, std::ostream* stream)
{
    *stream << edit.pointer << " = " << (edit.replacement == nullptr ? "nothing" : edit.replacement);
}

void applyEdit(const Edit& edit, ordered_json& document)
{
    const ordered_json::json_pointer pointer(edit.pointer);
    if (edit.replacement != nullptr) {
        document[pointer] = ordered_json::parse(edit.replacement);
    } else if (ordered_json& parent = document[pointer.parent_pointer()]; parent.is_object()) {
        parent.erase(pointer.back());
    }
}

// Pointers to every value below `value`.
void collectPointers(const ordered_json& value, const ordered_json::json_pointer& at,
                     std::vector<ordered_json::json_pointer>& pointers)
{
    if (!value.is_structured()) {
        return;
    }
    for (const auto& [name, member] : value.items()) {
        const auto pointer = value.is_array() ? at / static_cast<std::size_t>(std::stoul(name)) : at / name;
        pointers.push_back(pointer);
        collectPointers(member, pointer, pointers);
    }
}

class TargetFileEdit : public testing::TestWithParam<Edit> {};

}  // namespace

TEST_P(TargetFileEdit, IsRefusedWithItsPlace)
{
    ordered_json document = fullDocument();
    applyEdit(GetParam(), document);
    EXPECT_EQ(faultOf(document), GetParam().fault);
}

INSTANTIATE_TEST_SUITE_P(
    Members, TargetFileEdit,
    testing::Values(Edit{"", "[]", "not an object"}, Edit{"", "null", "not an object"},
                    Edit{"/more", "1", "more: unknown member"}, Edit{"/clock", "1", "clock: not a string"},
                    Edit{"/clock", "\"wall\"", "clock: neither \"real\" nor \"virtual\""},
                    Edit{"/bytesPerSecond", "0", "bytesPerSecond: not a whole number from 1 to 18446744073709551615"},
                    Edit{"/bytesPerSecond", "-1", "bytesPerSecond: not a whole number from 1 to 18446744073709551615"},
                    Edit{"/bytesPerSecond", "1.5", "bytesPerSecond: not a whole number from 1 to 18446744073709551615"},
                    Edit{"/bytesPerSecond", "\"1\"",
                         "bytesPerSecond: not a whole number from 1 to 18446744073709551615"},
                    Edit{"/flashDrive", "1", "flashDrive: not a string"}, Edit{"/tree", nullptr, "tree: missing"},
                    Edit{"/script", "[]", "script: not an object"}));

INSTANTIATE_TEST_SUITE_P(
    Tree, TargetFileEdit,
    testing::Values(
        Edit{"/tree", "null", "tree: not an object"}, Edit{"/tree/id", nullptr, "tree.id: missing"},
        Edit{"/tree/id", "1", "tree.id: not a string"}, Edit{"/tree/id", "\"\"", "tree.id: unknown id ''"},
        Edit{"/tree/id", R"("a\u0000b\u0000")", R"(tree.id: unknown id 'a\u0000b\u0000')"},
        Edit{"/tree/parameters", R"({"I\u0000D": 1})", R"(tree.parameters.I\u0000D: unknown parameter)"},
        Edit{"/tree/more", "1", "tree.more: unknown member"}, Edit{"/tree/items", "{}", "tree.items: not an array"},
        Edit{"/tree/items/0", "1", "tree.items[0]: not an object"},
        Edit{"/tree/items/0/id", nullptr, "tree.items[0].id: missing"},
        Edit{"/tree/items/0/more", "1", "tree.items[0].more: unknown member"},
        Edit{"/tree/items/0/items/0/id", "\"UPDATE\"", "tree.items[0].items[0].id: unknown id 'UPDATE'"},
        Edit{"/tree/items/0/items/0/items/0/id", "\"UPDATE_ELEMENT[x]\"",
             "tree.items[0].items[0].items[0].id: unknown id 'UPDATE_ELEMENT[x]'"},
        Edit{"/tree/items/0/parameters", "[]", "tree.items[0].parameters: not an object"},
        Edit{"/tree/items/0/parameters/SIZE", "1", "tree.items[0].parameters.SIZE: unknown parameter"},
        Edit{"/tree/items/0/parameters/PRODUCT~1SIZE", "1", "tree.items[0].parameters.PRODUCT/SIZE: unknown parameter"},
        Edit{"/tree/items/0/parameters/ID", "null", "tree.items[0].parameters.ID: neither a number nor a string"},
        Edit{"/tree/items/0/parameters/ID", "true", "tree.items[0].parameters.ID: neither a number nor a string"},
        Edit{"/tree/items/0/parameters/ID", "[1]", "tree.items[0].parameters.ID: neither a number nor a string"},
        Edit{"/tree/items/0/parameters/ID", "{}", "tree.items[0].parameters.ID: neither a number nor a string"}));

INSTANTIATE_TEST_SUITE_P(
    Script, TargetFileEdit,
    testing::Values(Edit{"/script/more", "[]", "script.more: unknown member"},
                    Edit{"/script/scan", "{}", "script.scan: not an array"},
                    Edit{"/script/scan/0", "1", "script.scan[0]: not an object"},
                    Edit{"/script/scan/0/status", "1", "script.scan[0].status: unknown member"},
                    Edit{"/script/scan/0/result", "2147483648",
                         "script.scan[0].result: not a whole number from -2147483648 to 2147483647"},
                    Edit{"/script/scan/0/result", "-2147483649",
                         "script.scan[0].result: not a whole number from -2147483648 to 2147483647"},
                    Edit{"/script/scan/0/result", "18446744073709551615",
                         "script.scan[0].result: not a whole number from -2147483648 to 2147483647"},
                    Edit{"/script/scan/0/result", "0.0",
                         "script.scan[0].result: not a whole number from -2147483648 to 2147483647"},
                    Edit{"/script/scan/0/errors", "{}", "script.scan[0].errors: not an array"},
                    Edit{"/script/scan/0/errors/0", "\"noise\"", "script.scan[0].errors[0]: not an object"},
                    Edit{"/script/scan/0/errors/0/code", nullptr, "script.scan[0].errors[0].code: missing"},
                    Edit{"/script/scan/0/errors/0/code", "4294967296",
                         "script.scan[0].errors[0].code: not a whole number from 0 to 4294967295"},
                    Edit{"/script/scan/0/errors/0/text", nullptr, "script.scan[0].errors[0].text: missing"},
                    Edit{"/script/scan/0/errors/0/text", "1", "script.scan[0].errors[0].text: not a string"},
                    Edit{"/script/scan/0/errors/0/node", "1", "script.scan[0].errors[0].node: unknown member"},
                    Edit{"/script/scan/0/errors/0/timeStamp", "-1",
                         "script.scan[0].errors[0].timeStamp: not a whole number from 0 to 18446744073709551615"},
                    Edit{"/script/scan/0/errors/0/function", "1", "script.scan[0].errors[0].function: not a string"},
                    Edit{"/script/lock/0/result", "1", "script.lock[0].result: unknown member"},
                    Edit{"/script/unlock", "1", "script.unlock: not an array"},
                    Edit{"/script/updateFinish/0", "null", "script.updateFinish[0]: not an object"},
                    Edit{"/script/values", "[]", "script.values: not an object"},
                    Edit{"/script/values/~1ROOT~1HCN", "[]", "script.values./ROOT/HCN: not ITEM:PARAMETER"},
                    Edit{"/script/values/~1ROOT[1]:ID", "[]", "script.values./ROOT[1]:ID: not ITEM:PARAMETER"},
                    Edit{"/script/values/~1ROOT:SIZE", "[]", "script.values./ROOT:SIZE: not ITEM:PARAMETER"},
                    Edit{"/script/values/~1ROOT:ID", "{}", "script.values./ROOT:ID: not an array"},
                    Edit{"/script/elements", "[]", "script.elements: not an object"},
                    Edit{"/script/elements/~1ROOT~1HCN", "{}", "script.elements./ROOT/HCN: not BOARD#ID"},
                    Edit{"/script/elements/~1ROOT~1HCN#x", "{}", "script.elements./ROOT/HCN#x: not BOARD#ID"},
                    Edit{"/script/elements/~1ROOT~1HCN#01", "{}", "script.elements./ROOT/HCN#01: not BOARD#ID"},
                    Edit{"/script/elements/ROOT~1HCN#1", "{}", "script.elements.ROOT/HCN#1: not BOARD#ID"},
                    Edit{"/script/elements/~1ROOT~1HCN#1/more", "[]",
                         "script.elements./ROOT/HCN#1.more: unknown member"},
                    Edit{"/script/elements/~1ROOT~1HCN#1/polls/0/status", "\"2\"",
                         "script.elements./ROOT/HCN#1.polls[0].status: not a whole number from 0 to 4294967295"},
                    Edit{"/script/elements/~1ROOT~1HCN#1/polls/1/results", "[]",
                         "script.elements./ROOT/HCN#1.polls[1].results: unknown member"},
                    Edit{"/script/elements/~1ROOT~1HCN#1/finish/0/results", "1",
                         "script.elements./ROOT/HCN#1.finish[0].results: not an array"},
                    Edit{"/script/elements/~1ROOT~1HCN#1/start/0/done", "1",
                         "script.elements./ROOT/HCN#1.start[0].done: unknown member"}));

TEST(TargetFile, WithEveryMemberIsAccepted)
{
    using namespace ZoNInventoryIDs;
    const SimulatedTarget device(fullDocument());
    const Scan scan;
    ASSERT_EQ(scan.result, 0);
    ASSERT_EQ(scan.errors.count(), 1U);
    EXPECT_EQ(scan.errors.text(0), "noise");
    ErrorPool errors;
    EXPECT_EQ(scan.item(HCN).getValue<unsigned>(errors, PRODUCT / SERIAL_NUMBER), 16777232U);
    EXPECT_EQ(scan.item(HCN / UPDATE_INFO / UPDATE_ELEMENT).getValue<ZoCVersion>(errors, VERSION), ZoCVersion("23.1"));
    EXPECT_EQ(errors.count(), 0U);
    EXPECT_EQ(scan.item(HCN).getValue<ZoCString>(errors, PRODUCT / NAME), ZoCString(""));
    ASSERT_EQ(errors.count(), 1U);
    EXPECT_EQ(errors.text(0), "cannot read");
}

TEST(TargetFile, NamesThePlaceOfAnyMemberThatIsOfTheWrongType)
{
    const ordered_json whole = fullDocument();
    std::vector<ordered_json::json_pointer> pointers;
    collectPointers(whole, ordered_json::json_pointer(), pointers);
    ASSERT_GT(pointers.size(), 60U);
    for (const auto& pointer : pointers) {
        ordered_json document = whole;
        document[pointer] = true;  // of no member's type
        std::string place;
        for (ordered_json::json_pointer rest = pointer; !rest.empty(); rest.pop_back()) {
            const bool position = whole[rest.parent_pointer()].is_array();
            place = (position ? '[' + rest.back() + ']' : '.' + rest.back()) + place;
        }
        EXPECT_EQ(faultOf(document).substr(0, place.size()), place.substr(1) + ':') << pointer.to_string();
    }
}

TEST(TargetFile, MayLackEveryMemberButItemsIdsTheTreeAndWhatAnErrorSays)
{
    const ordered_json whole = fullDocument();
    std::vector<ordered_json::json_pointer> pointers;
    collectPointers(whole, ordered_json::json_pointer(), pointers);
    unsigned mandatory = 0;
    for (const auto& pointer : pointers) {
        ordered_json document = whole;
        ordered_json& parent = document[pointer.parent_pointer()];
        if (parent.is_array()) {
            parent.erase(static_cast<std::size_t>(std::stoul(pointer.back())));
        } else {
            parent.erase(pointer.back());
        }
        const bool isMandatory = std::set<std::string>{"id", "tree", "code", "text"}.count(pointer.back()) != 0;
        mandatory += isMandatory ? 1 : 0;
        if (isMandatory) {
            EXPECT_TRUE(faultOf(document).ends_with(pointer.back() + ": missing")) << pointer.to_string();
            continue;
        }
        const SimulatedTarget device(document);
        const Scan scan;
        EXPECT_EQ(scan.result, 0) << pointer.to_string();
        EXPECT_NE(scan.tree, nullptr) << pointer.to_string();
    }
    EXPECT_EQ(mandatory, 13U);
}

TEST(TargetFile, NeedsNothingButTheTreesRoot)
{
    const SimulatedTarget device(ordered_json::parse(R"({"tree": {"id": "ROOT"}})"));
    const Scan scan;
    EXPECT_EQ(scan.result, 0);
    ASSERT_NE(scan.tree, nullptr);
    EXPECT_EQ(scan.tree->getFirstSubItem(), nullptr);
}

TEST(TargetFile, IsReadAtEachScan)
{
    const SimulatedTarget device(ordered_json::parse(R"({"tree": {"id": "ROOT"}})"));
    const Scan before;
    std::ofstream(device.path()) << R"({"tree": {"id": "HCN"}})";
    const Scan after;
    EXPECT_EQ(before.tree->getID(), ZoNInventoryIDs::ROOT);
    EXPECT_EQ(after.tree->getID(), ZoNInventoryIDs::HCN);
}

TEST(TargetFile, MustBeNamed)
{
    ::unsetenv("TRELLAN_TARGET");
    const std::string none =
        "The target file (none) cannot be read: the environment variable TRELLAN_TARGET names none.";
    EXPECT_EQ(scanFault(), none);
    ::setenv("TRELLAN_TARGET", "", 1);
    EXPECT_EQ(scanFault(), none);
    ::unsetenv("TRELLAN_TARGET");
}

TEST(TargetFile, MustExist)
{
    ::setenv("TRELLAN_TARGET", "/nowhere/target.json", 1);
    EXPECT_EQ(scanFault(), "The target file /nowhere/target.json cannot be read: No such file or directory.");
    ::setenv("TRELLAN_TARGET", "/tmp", 1);
    EXPECT_EQ(scanFault(), "The target file /tmp cannot be read: Is a directory.");
    ::unsetenv("TRELLAN_TARGET");
}

TEST(TargetFile, MustHaveANameThatLeadsSomewhere)
{
    const TempDir folder;
    const std::string loop = folder.path() / "loop";
    std::filesystem::create_symlink("loop", loop);
    ::setenv("TRELLAN_TARGET", loop.c_str(), 1);
    EXPECT_EQ(scanFault(), "The target file " + loop + " cannot be read: Too many levels of symbolic links.");
    const std::string longName = folder.path() / std::string(300, 'n');
    ::setenv("TRELLAN_TARGET", longName.c_str(), 1);
    EXPECT_EQ(scanFault(), "The target file " + longName + " cannot be read: File name too long.");
    ::unsetenv("TRELLAN_TARGET");
}

TEST(TargetFile, MustBeValidJson)
{
    for (const char* text :
         {"", "{", "{} {}", "{\"tree\": {\"id\": \"ROOT\",}}", "{\"tree\": 01}", "\"\xFF\"", "1e999"}) {
        EXPECT_NE(faultOfText(text).find(" cannot be read: "), std::string::npos) << text;
    }
}

TEST(TargetFile, IsRefusedWithTheWholeAddressOfWhatIsWrong)
{
    const std::string address = "/ROOT/HCN/PIGGYBACK_MODULE/PIGGYBACK_MODULE[2]/UPDATE_INFO/UPDATE_ELEMENT[3]:VERSION";
    EXPECT_EQ(faultOfText(R"({"tree":{"id":"ROOT"},"script":{"values":{")" + address + "\":{}}}}"),
              " cannot be read: script.values." + address + ": not an array");
}

// Eighty bytes, of characters of two bytes each, and what is too long.
TEST(TargetFile, IsRefusedWithNoMoreThanTheBeginningOfALongText)
{
    const std::string longText(5000000, 'a');
    const std::string begins = std::string(80, 'a') + "...";
    const std::string beginsName = std::string(256, 'a') + "...";
    EXPECT_EQ(faultOfText(R"({"tree":{"id":")" + longText + "\"}}"),
              " cannot be read: tree.id: unknown id '" + begins + "'");
    EXPECT_EQ(faultOfText("{\"" + longText + R"(":1,"tree":{"id":"ROOT"}})"),
              " cannot be read: " + beginsName + ": unknown member");
    EXPECT_EQ(faultOfText(R"({"tree":{"id":"ROOT","parameters":{")" + longText + "\":1}}}"),
              " cannot be read: tree.parameters." + beginsName + ": unknown parameter");
    EXPECT_EQ(faultOfText(R"({"tree":{"id":"ROOT"},"flashDrive":")" + longText + "\"}"),
              " cannot be read: flashDrive: too long for a path");
    EXPECT_EQ(faultOfText("{\"" + longText),
              " cannot be read: parse error at line 1, column 5000003: syntax error while parsing object key - invalid "
              "string: missing closing quote; last read: '\"" +
                  std::string(79, 'a') + "...'; expected string literal");
    EXPECT_EQ(faultOfText("[" + std::string(5000000, '1') + "]"),
              " cannot be read: number overflow parsing '" + std::string(80, '1') + "...'");
}

TEST(TargetFile, IsRefusedWithWholeCharactersOfALongText)
{
    const auto unknownId = [](const std::string& id) {
        return faultOfText(R"({"tree":{"id":")" + id + "\"}}").substr(std::string(" cannot be read: tree.id: ").size());
    };
    const std::string eighty(80, 'a');
    EXPECT_EQ(unknownId(eighty), "unknown id '" + eighty + "'");
    EXPECT_EQ(unknownId(eighty + "b"), "unknown id '" + eighty + "...'");
    EXPECT_EQ(unknownId(eighty.substr(1) + "\xC3\xA4"), "unknown id '" + eighty.substr(1) + "...'");
    EXPECT_EQ(unknownId(eighty.substr(2) + "\xC3\xA4"), "unknown id '" + eighty.substr(2) + "\xC3\xA4'");
    EXPECT_EQ(unknownId(eighty.substr(2) + "\xC3\xA4"
                                           "b"),
              "unknown id '" + eighty.substr(2) + "\xC3\xA4...'");
    EXPECT_EQ(unknownId(eighty.substr(3) + "\xF0\x9F\x94\xA5"), "unknown id '" + eighty.substr(3) + "...'");
}

TEST(TargetFile, MayHave512LevelsOfItems)
{
    const auto nested = [](int levels) {
        std::string text = R"({"tree": )";
        for (int level = 1; level < levels; ++level) {
            text += R"({"id": "ROOT", "items": [)";
        }
        text += R"({"id": "ROOT"})";
        for (int level = 1; level < levels; ++level) {
            text += "]}";
        }
        return text + "}";
    };
    const SimulatedTarget device(ordered_json::object());
    std::ofstream(device.path()) << nested(512);
    {
        const Scan scan;
        EXPECT_EQ(scan.result, 0);
    }
    std::string place = "tree";
    for (int level = 1; level < 513; ++level) {
        place += ".items[0]";
    }
    EXPECT_EQ(faultOfText(nested(513)), " cannot be read: " + place + ": more than 512 levels of items");
    EXPECT_EQ(faultOfText(nested(200000)), " cannot be read: nested more than 1030 levels deep");
}

TEST(TargetFile, IsReadNoFurtherThanWhereItIsNestedTooDeep)
{
    const auto nested = [](std::size_t levels) {
        return R"({"tree": )" + std::string(levels - 1, '[') + std::string(levels - 1, ']') + "}";
    };
    EXPECT_EQ(faultOfText(nested(1030)), " cannot be read: tree: not an object");
    EXPECT_EQ(faultOfText(nested(1031)), " cannot be read: nested more than 1030 levels deep");
    EXPECT_EQ(faultOfText(std::string(500000, '[') + '\0'), " cannot be read: nested more than 1030 levels deep");
}
