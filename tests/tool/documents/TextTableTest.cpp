// The columns of a table stand below each other as a terminal shows them.
#include <gtest/gtest.h>

#include "tool/documents/TextTable.h"

using TrellanTool::tableText;

TEST(TextTables, HaveAColumnForEachCellAndARuleUnderTheHeading)
{
    EXPECT_EQ(tableText({{"Name", "No."}, {"a.bin", "1"}, {"b", "20"}}, true),
              "Name  | No.\n"
              "-----------\n"
              "a.bin | 1\n"
              "b     | 20\n");
}

TEST(TextTables, CountTheCharactersOfANameAndNotItsBytes)
{
    EXPECT_EQ(tableText({{"gerät.bin", "1"}, {"geraet.bin", "2"}}, false),
              "gerät.bin  | 1\n"
              "geraet.bin | 2\n");
}

TEST(TextTables, CountTwoColumnsForAWideCharacterAndNoneForAnAccentOfItsOwn)
{
    EXPECT_EQ(
        tableText({{"固件.bin", "1"}, {"e\xCC\x81.bin", "2"}, {"12345678", "3"}, {"\xF0\x9F\x98\x80", "4"}}, false),
        "固件.bin | 1\n"
        "e\xCC\x81.bin    | 2\n"
        "12345678 | 3\n"
        "\xF0\x9F\x98\x80       | 4\n");
}

TEST(TextTables, CountOneColumnForAByteThatIsNoCharacter)
{
    EXPECT_EQ(tableText({{"\xFF\xE9z", "1"}, {"1234", "2"}, {"12\xE5\xA0", "3"}}, false),
              "\xFF\xE9z  | 1\n"
              "1234 | 2\n"
              "12\xE5\xA0 | 3\n");
}

TEST(TextTables, CountAControlCharacterAsItsEscape)
{
    EXPECT_EQ(tableText({{"a\x1b\nb", "1"}, {"\xC2\x85", "2"}, {"1234567890", "3"}}, false),
              "a\x1b\\x0ab | 1\n"
              "\xC2\x85   | 2\n"
              "1234567890 | 3\n");
}
