// What an inspector says of the errors of an update that are of none of its elements.
#include <stdexcept>

#include "Inspecting.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

nlohmann::ordered_json reporting(unsigned code, const char* text)
{
    return {{"errors", {{{"code", code}, {"text", text}}}}};
}

class GeneralErrors : public Inspecting {
protected:
    GeneralErrors()
    {
        boards = {hcnBoard({}), ioBoard({installed(1)})};
        entries = {ioEntry("one.bin", 1)};
    }

    Names texts() const
    {
        Names result;
        for (unsigned i = 0; i < inspector->getGeneralErrorCount(); ++i) {
            result.push_back(inspector->getGeneralError(i).text);
        }
        return result;
    }
};

}  // namespace

TEST_F(GeneralErrors, AreThoseOfReadingFinishingAndUnlockingAndNoneOfAnElement)
{
    script["scan"] = Json::array({reporting(1, "noise")});
    script["updateFinish"] = Json::array({reporting(2, "no answer")});
    script["unlock"] = Json::array({reporting(3, "not saved")});
    script["elements"]["/ROOT/IOMODULE#1"]["finish"] = {{{"results", {{{"code", 8}, {"text", "verify"}}}}}};
    ASSERT_EQ(apply(), 0u);
    EXPECT_THAT(texts(), ElementsAre("noise"));
    EXPECT_EQ(updater->run(), 0);

    EXPECT_THAT(texts(), ElementsAre("noise", "no answer", "not saved"));
    EXPECT_EQ(inspector->getGeneralError(2).code, 3u);
    EXPECT_THAT(errorsOf(0), ElementsAre("verify"));
    EXPECT_THROW(inspector->getGeneralError(3), std::out_of_range);
}

TEST_F(GeneralErrors, TellWhyTheTargetCouldNotBeLocked)
{
    script["lock"] = Json::array({reporting(4, "busy")});
    ASSERT_EQ(apply(), 0u);
    EXPECT_EQ(updater->run(), 0);

    EXPECT_THAT(texts(), ElementsAre("busy"));
}

TEST_F(GeneralErrors, AreKnownOfAnUpdateThatACallbackStops)
{
    script["unlock"] = Json::array({reporting(3, "not saved")});
    ASSERT_EQ(apply(), 0u);
    updater->setPhaseCallBack([](unsigned) { throw std::runtime_error("stop"); });
    EXPECT_THROW(updater->run(), std::runtime_error);

    EXPECT_THAT(texts(), ElementsAre("not saved"));
}

TEST_F(GeneralErrors, AreNoneOfWhatIsReportedAfterTheUpdate)
{
    ASSERT_EQ(apply(), 0u);
    EXPECT_EQ(updater->run(), 1);
    masterErrors().addError({});

    EXPECT_THAT(texts(), IsEmpty());
}
