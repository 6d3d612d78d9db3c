// The text of a target file, whatever texts the target has.
#include <gtest/gtest.h>

#include <sstream>

#include "support/EmptyInspector.h"
#include "tool/documents/TargetDocument.h"

using TrellanTool::omissionText;
using TrellanTool::TargetDocument;
using ZoNTrellanInspector::ZoTRecordedItem;
using ZoNTrellanInspector::ZoTRecordedParameter;

namespace {

// Knows a board whose rack is called `text`, and its slot.
class InspectorOfARack : public EmptyInspector {
public:
    explicit InspectorOfARack(const std::string& text) : parameters{{"RACKNAME", true, text, 0}, {"SLOT", false, "", 7}}
    {
    }

    unsigned getRecordedItemCount() override { return 2; }
    const ZoTRecordedItem& getRecordedItem(unsigned item) override { return items[item]; }
    const ZoTRecordedParameter& getRecordedParameter(unsigned, unsigned parameter) override
    {
        return parameters[parameter];
    }

private:
    const ZoTRecordedItem items[2] = {{0, "ROOT", 0}, {1, "HCN[3]", 2}};
    const ZoTRecordedParameter parameters[2];
};

}  // namespace

TEST(TargetDocuments, KeepTextsOfAllCharactersAndTakeNoOthers)
{
    std::ostringstream out;
    TargetDocument document(out);
    document.item(0, "ROOT");
    document.item(1, "HCN");
    EXPECT_FALSE(document.text("RACKNAME", "a\xff"));
    document.item(2, "CN[2]");
    EXPECT_FALSE(document.text("UNITNAME", "\xed\xa0\x80"));  // half of a pair of UTF-16
    EXPECT_EQ(document.address(), "/ROOT/HCN/CN[2]");
    EXPECT_TRUE(document.text("PRODUCT/NAME", std::string("a\0\n\xc3\xa4\x7f", 6)));
    EXPECT_FALSE(document.text("RACKNAME", "\xc0\x80"));
    document.number("SLOT", 4294967295U);
    document.end();
    EXPECT_EQ(out.str(), R"({
  "tree": {
    "id": "ROOT",
    "items": [
      {
        "id": "HCN",
        "items": [
          {
            "id": "CN[2]",
            "parameters": {
              "PRODUCT/NAME": "a\u0000\n)"
                         "\xc3\xa4\x7f"
                         R"(",
              "SLOT": 4294967295
            }
          }
        ]
      }
    ]
  }
}
)");
}

TEST(TargetDocuments, CloseWhatIsOpenBeforeAnItemThatStandsHigher)
{
    std::ostringstream out;
    TargetDocument document(out);
    document.item(0, "ROOT");
    document.item(1, "HCN");
    document.item(2, "CN");
    document.number("SLOT", 1);
    document.item(1, "ION");
    EXPECT_EQ(document.address(), "/ROOT/ION");
    document.end();
    EXPECT_EQ(out.str(), R"({
  "tree": {
    "id": "ROOT",
    "items": [
      {
        "id": "HCN",
        "items": [
          {
            "id": "CN",
            "parameters": {
              "SLOT": 1
            }
          }
        ]
      },
      {
        "id": "ION"
      }
    ]
  }
}
)");
}

TEST(TargetDocuments, NameWhatIsLeftOut)
{
    EXPECT_EQ(omissionText("/ROOT/HCN", "SLOT", "no answer"), "left out: SLOT of /ROOT/HCN: no answer");
    EXPECT_EQ(omissionText("/ROOT/HCN", "", "no answer"), "left out: /ROOT/HCN: no answer");
}

TEST(TargetDocuments, LeaveOutTextsThatAreNotUtf8)
{
    InspectorOfARack inspector("rack \xff");
    std::ostringstream out;
    EXPECT_EQ(TrellanTool::writeTargetDocument(out, inspector),
              std::vector<std::string>{"left out: RACKNAME of /ROOT/HCN[3]: its text is not UTF-8"});
    EXPECT_EQ(out.str(), R"({
  "tree": {
    "id": "ROOT",
    "items": [
      {
        "id": "HCN[3]",
        "parameters": {
          "SLOT": 7
        }
      }
    ]
  }
}
)");
}
