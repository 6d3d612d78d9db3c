#include <gtest/gtest.h>

#include "JsonText.h"

using ZoNJson::json;

TEST(JsonPrinting, PutsOneMemberOnALineWithAnIndent)
{
    EXPECT_EQ(parse(R"({"b":[1,{"c":true}],"a":{},"d":[]})").dump(4),
              "{\n"
              "    \"a\": {},\n"
              "    \"b\": [\n"
              "        1,\n"
              "        {\n"
              "            \"c\": true\n"
              "        }\n"
              "    ],\n"
              "    \"d\": []\n"
              "}");
}

TEST(JsonPrinting, IndentsWithTheCharacterThatIsGiven)
{
    EXPECT_EQ(parse("[[1]]").dump(1, '\t'), "[\n\t[\n\t\t1\n\t]\n]");
    EXPECT_EQ(parse("[1,2]").dump(0), "[\n1,\n2\n]");
}

TEST(JsonPrinting, EscapesWhatStringsMustNotHold)
{
    EXPECT_EQ(json("\"\\/\b\f\n\r\t\x01\x7F").dump(), R"("\"\\/\b\f\n\r\t\u0001)"
                                                      "\x7F\"");
}

TEST(JsonPrinting, EscapesCharactersBeyondAsciiWhenItIsAskedTo)
{
    const json value("\xC3\xA4\xF0\x9F\x98\x80");
    EXPECT_EQ(value.dump(), "\"\xC3\xA4\xF0\x9F\x98\x80\"");
    EXPECT_EQ(value.dump(-1, ' ', true), R"("\u00e4\ud83d\ude00")");
}

TEST(JsonPrinting, TreatsInvalidUtf8AsItIsTold)
{
    const json value(
        "a\xFF"
        "b");
    EXPECT_THROW(value.dump(), ZoNJson::type_error);
    EXPECT_EQ(value.dump(-1, ' ', false, ZoNJson::replace),
              "\"a\xEF\xBF\xBD"
              "b\"");
    EXPECT_EQ(value.dump(-1, ' ', false, ZoNJson::ignore), "\"ab\"");
}
