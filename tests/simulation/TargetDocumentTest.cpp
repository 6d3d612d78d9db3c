// What a target file may be as a file and as a document, whatever its members say.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>

#include "Device.h"
#include "support/SimulatedTarget.h"

using namespace ZoNInventoryIDs;
using nlohmann::ordered_json;

namespace {

// The reason why a scan of `device` fails.
std::string faultOf(const SimulatedTarget& device)
{
    testing::internal::CaptureStderr();
    const Scan scan;
    testing::internal::GetCapturedStderr();
    EXPECT_NE(scan.result, 0);
    EXPECT_EQ(scan.errors.count(), 1U);
    if (scan.errors.count() != 1) {
        return "";
    }
    EXPECT_EQ(scan.errors.code(0), 0x26300007U);
    const std::string text = scan.errors.text(0);
    const std::string start = "The target file " + device.path().string() + " cannot be read: ";
    EXPECT_EQ(text.substr(0, start.size()), start);
    return text.substr(std::min(start.size(), text.size()));
}

}  // namespace

TEST(TargetDocument, HoldsNoNulByte)
{
    const SimulatedTarget device(ordered_json::object());
    for (const char* rest : {"", "more", "\n"}) {
        std::ofstream(device.path(), std::ios::binary) << R"({"tree": {"id": "ROOT"}})" << '\0' << rest;
        EXPECT_EQ(faultOf(device), "it holds a NUL byte.");
    }
}

TEST(TargetDocument, IsInARegularFile)
{
    const SimulatedTarget device(ordered_json::object());
    std::filesystem::remove(device.path());
    ASSERT_EQ(::mkfifo(device.path().c_str(), 0600), 0);
    EXPECT_EQ(faultOf(device), "not a regular file.");
    std::filesystem::remove(device.path());
    std::filesystem::create_symlink("/dev/zero", device.path());
    EXPECT_EQ(faultOf(device), "not a regular file.");
}

TEST(TargetDocument, IsNotReadInPart)
{
    const SimulatedTarget device(ordered_json::object());
    std::filesystem::remove(device.path());
    std::filesystem::create_symlink("/proc/self/mem", device.path());
    EXPECT_EQ(faultOf(device), "Input/output error.");
}

TEST(TargetDocument, CountsTheLastOfDuplicateMembers)
{
    const SimulatedTarget device(ordered_json::object());
    std::ofstream(device.path()) << R"({"tree": 1, "clock": "virtual", "tree": {"id": "ROOT", "id": "HCN"}})";
    const Scan scan;
    ASSERT_EQ(scan.result, 0);
    EXPECT_EQ(scan.tree->getID(), HCN);
}

TEST(TargetDocument, MayHaveVeryManyMembers)
{
    std::string elements = "\"/ROOT/HCN#1\":{}";
    std::string values = "\"/ROOT/HCN:ID\":[]";
    std::string parameters = "\"ID\":1";
    for (int index = 2; index <= 20000; ++index) {
        const std::string number = std::to_string(index);
        elements.append(",\"/ROOT/HCN#").append(number).append("\":{}");
        values.append(",\"/ROOT/HCN:PRODUCT[").append(number).append("]/NAME\":[]");
        parameters.append(",\"PRODUCT[").append(number).append("]/NAME\":1");
    }
    const SimulatedTarget device(ordered_json::object());
    std::ofstream(device.path()) << R"({"tree": {"id": "ROOT", "parameters": {)" << parameters
                                 << R"(}}, "script": {"elements": {)" << elements << R"(}, "values": {)" << values
                                 << "}}}";
    const Scan scan;
    EXPECT_EQ(scan.result, 0);
}
