// The form in which values are compared and looked up.
#include "assignment/AssignmentFixture.h"
#include "assignment/ValueKey.h"

namespace {

using ZoNUpdateAssignment::numberKey;
using ZoNUpdateAssignment::textKey;
using ZoNUpdateAssignment::valueKey;

bool beginsWith(const std::string& key, const std::string& beginning)
{
    return key.compare(0, beginning.size(), beginning) == 0;
}

TEST(ValueKeyTest, NoKeyIsTheBeginningOfAnother)
{
    std::vector<std::string> keys = {valueKey(nullptr), textKey(""),   textKey("a"),  textKey("null"),
                                     textKey("1"),      numberKey(0),  numberKey(1),  numberKey(10),
                                     numberKey(100),    numberKey(11), textKey("1:"), textKey("1;")};
    for (unsigned character = 0; character < 256; ++character) {
        keys.push_back(textKey("a" + std::string(1, static_cast<char>(character))));
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
        for (std::size_t j = 0; j < keys.size(); ++j) {
            EXPECT_TRUE(i == j || !beginsWith(keys[i], keys[j])) << keys[i] << " begins with " << keys[j];
        }
    }
}

TEST(ValueKeyTest, AValueHasTheKeyOfItsTextOrNumber)
{
    EXPECT_EQ(valueKey(parseJson(R"("a\u0000b")")), textKey(std::string("a\0b", 3)));
    EXPECT_EQ(valueKey(parseJson("18446744073709551615")), numberKey(18446744073709551615u));
    EXPECT_EQ(valueKey(parseJson("null")), valueKey(nullptr));
}

TEST(ValueKeyTest, OtherValuesHaveNoKey)
{
    for (const char* value : {"true", "-1", "1.0", "18446744073709551616", "{}", "[]", "[1]"}) {
        EXPECT_EQ(valueKey(parseJson(value)), "") << value;
    }
}

}  // namespace
