// The platform's parser held against another one, on texts that are JSON, nearly JSON, or far from it.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>

#include "JsonText.h"

namespace {

// As both print what they have read.
std::string read(const std::string& content)
{
    const ZoNJson::json value = parse(content);
    return value.is_invalid() ? "invalid" : value.dump();
}

std::string readByOther(const std::string& content)
{
    const auto value = nlohmann::json::parse(content, nullptr, false);
    return value.is_discarded() ? "invalid" : value.dump();
}

class Texts {
public:
    std::string next()
    {
        std::string text = value(4);
        if (pick(3) != 0) {
            return text;
        }
        for (unsigned change = pick(3); change != ~0U; --change) {
            const std::size_t at = pick(static_cast<unsigned>(text.size()) + 1);
            switch (pick(3)) {
                case 0:
                    text.insert(at, piece());
                    break;
                case 1:
                    text.erase(at, 1);
                    break;
                default:
                    text = text.substr(0, at) + value(1) + text.substr(at);
            }
        }
        return text;
    }

private:
    unsigned pick(unsigned count) { return static_cast<unsigned>(random() % count); }

    template <std::size_t count>
    std::string oneOf(const char* const (&texts)[count])
    {
        return texts[pick(count)];
    }

    std::string piece()
    {
        static const char* const pieces[] = {"[",
                                             "]",
                                             "{",
                                             "}",
                                             ",",
                                             ":",
                                             "\"",
                                             "\\",
                                             "\\u",
                                             "\xED\xA0\x80",
                                             "\xC3",
                                             "\x80",
                                             "\xFF",
                                             "\xE2",
                                             "\xF0\x9F",
                                             "\xC0\xAF",
                                             "\x1F",
                                             "\xF4\x90\x80",
                                             "\xE0\x80\x80",
                                             "\xEF\xBB\xBF",
                                             " ",
                                             "\v",
                                             "-",
                                             "+",
                                             ".",
                                             "e",
                                             "0",
                                             "9",
                                             "/",
                                             "'",
                                             "nul",
                                             "\\uD800",
                                             "\\uDC00"};
        return oneOf(pieces);
    }

    std::string number()
    {
        static const char* const numbers[] = {
            "0",
            "-0",
            "7",
            "-12",
            "1.5",
            "0.1",
            "-0.0",
            "1e5",
            "2E-3",
            "4e+2",
            "18446744073709551615",
            "18446744073709551616",
            "-9223372036854775808",
            "-9223372036854775809",
            "1152921504606846975",
            "1152921504606846976",
            "-576460752303423488",
            "-576460752303423489",
            "576460752303423488",
            "0e400",
            "0.0e999",
            "1e400",
            "1e-400",
            "-1e-400",
            "5e-324",
            "2e-324",
            "1.7976931348623157e308",
            "1.7976931348623159e308",
            "123456789012345678901234567890e-10",
            "0.30000000000000004",
            "9007199254740993.0",
            "2.2250738585072011e-308",
            "01",
            "1.",
            ".5",
            "1e",
            "--1",
            "1.5e308",
            "100000000000000000000000e290",
            "179769313486231570000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
            "0000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
            "0000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
            "0000000000000000e-20"};
        return oneOf(numbers);
    }

    std::string text()
    {
        static const char* const pieces[] = {"a",
                                             "bc",
                                             "name",
                                             "hwCompatibilityId",
                                             "checksum",
                                             "\\n",
                                             "\\\"",
                                             "\\\\",
                                             "\\/",
                                             "\\u0041",
                                             "\\u0000",
                                             "\\u00e4",
                                             "\\ud83d\\ude00",
                                             "\\uDBFF\\uDFFF",
                                             "\xC3\xA4",
                                             "\xE2\x82\xAC",
                                             "\xF0\x9F\x98\x80",
                                             "\x7F",
                                             " ",
                                             "\\uD7FF",
                                             "\\uE000",
                                             "\xED\x9F\xBF"};
        std::string content;
        for (unsigned count = pick(5); count != 0; --count) {
            content += oneOf(pieces);
        }
        return '"' + content + '"';
    }

    std::string blanks()
    {
        static const char* const sorts[] = {"", "", "", " ", "\n  ", "\t", "\r\n", "                    "};
        return oneOf(sorts);
    }

    std::string list(char open, char close, unsigned depth)
    {
        std::string content(1, open);
        const unsigned count = pick(12) == 0 ? 20 + pick(20) : pick(5);
        for (unsigned i = 0; i < count; ++i) {
            content += (i == 0 ? "" : ",") + blanks();
            content += open == '{' ? text() + blanks() + ':' : "";
            content += value(depth - 1);
        }
        return content + close;
    }

    std::string value(unsigned depth)
    {
        static const char* const literals[] = {"null", "true", "false"};
        std::string content;
        switch (pick(depth == 0 ? 3 : 5)) {
            case 0:
                content = number();
                break;
            case 1:
                content = text();
                break;
            case 2:
                content = oneOf(literals);
                break;
            case 3:
                content = list('[', ']', depth);
                break;
            default:
                content = list('{', '}', depth);
        }
        return blanks() + content + blanks();
    }

    std::mt19937 random{20201};
};

}  // namespace

TEST(RandomJson, IsReadAsByAnotherParser)
{
    Texts texts;
    unsigned valid = 0;
    for (unsigned i = 0; i < 20000; ++i) {
        const std::string text = texts.next();
        const std::string expected = readByOther(text);
        ASSERT_EQ(read(text), expected) << text;
        valid += expected == "invalid" ? 0 : 1;
    }
    EXPECT_GT(valid, 5000u);
    EXPECT_LT(valid, 15000u);
}
