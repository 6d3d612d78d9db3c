// printErrorList: the errors of a pool for a console of 80 columns. With an indent of 7 a line has room for 71
// characters.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "Updating.h"
#include "support/ErrorPool.h"

using ::testing::EndsWith;

namespace {

std::string repeated(const std::string& text, unsigned times)
{
    std::string result;
    for (unsigned i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

ZoSErrorRecord error(unsigned code, const std::string& text)
{
    ZoSErrorRecord record;
    record.code = code;
    record.text = text;
    return record;
}

class PrintErrorList : public Updating {
protected:
    // What is printed for `errors`, the verbose option being `verbose`.
    static std::string printed(const std::vector<ZoSErrorRecord>& errors, unsigned indent = 7, bool verbose = false)
    {
        ZoNTrellanUpdater::ZoTOptions options = optionsFor(0);
        options.verbose = verbose;
        ZoCTrellanUpdater updater(options);
        ErrorPool pool;
        for (const ZoSErrorRecord& record : errors) {
            pool.get().addError(record);
        }
        const MessageCapture capture(updater);
        updater.printErrorList(pool, indent);
        return capture.text();
    }

    // What follows the first line for an error with `text`.
    static std::string wrapped(const std::string& text)
    {
        const std::string all = printed({error(1, text)});
        return all.substr(all.find('\n') + 1);
    }
};

const std::string margin = "         ";  // two columns right of an indent of 7

}  // namespace

TEST_F(PrintErrorList, PrintsNothingForAnEmptyList)
{
    EXPECT_EQ(printed({}), "");
    EXPECT_EQ(printed({}, 7, true), "");
}

TEST_F(PrintErrorList, PrintsCodeOriginAndText)
{
    EXPECT_EQ(printed({error(0x26300003, "The target is locked by another process.")}),
              "       ERROR 0x26300003 (reported by Host PC):\n"
              "         The target is locked by another process.\n");
}

TEST_F(PrintErrorList, NamesTheReportingNodeBySerialNumber)
{
    ZoSErrorRecord record = error(0xABC, "text");
    record.originNode = 16777232;
    EXPECT_EQ(printed({record}), "       ERROR 0xabc (reported by S/N 16777232):\n         text\n");
}

TEST_F(PrintErrorList, PrintsAnOriginNodeOfAllBitsUnsigned)
{
    ZoSErrorRecord record = error(0xFFFFFFFF, "text");
    record.originNode = 0xFFFFFFFF;
    EXPECT_EQ(printed({record}), "       ERROR 0xffffffff (reported by S/N 4294967295):\n         text\n");
}

TEST_F(PrintErrorList, PrintsCodeZeroWithoutAPrefix)
{
    EXPECT_EQ(printed({error(0, "text")}), "       ERROR 0 (reported by Host PC):\n         text\n");
}

TEST_F(PrintErrorList, KeepsTheOrderOfTheList)
{
    EXPECT_EQ(printed({error(2, "first"), error(1, "second")}),
              "       ERROR 0x2 (reported by Host PC):\n"
              "         first\n"
              "       ERROR 0x1 (reported by Host PC):\n"
              "         second\n");
}

TEST_F(PrintErrorList, IndentsAsAsked)
{
    EXPECT_EQ(printed({error(1, "text")}, 0), "ERROR 0x1 (reported by Host PC):\n  text\n");
    EXPECT_EQ(printed({error(1, "text")}, 3), "   ERROR 0x1 (reported by Host PC):\n     text\n");
}

TEST_F(PrintErrorList, ShowsTimeModuleAndFunctionWhenVerbose)
{
    ZoSErrorRecord record = error(5, "verify");
    record.originNode = 42;
    record.timeStamp = 1500;
    record.mainModule = 12;
    record.subModule = 3;
    record.function = "flashWrite";
    record.line = 99;
    EXPECT_EQ(printed({record}, 7, true),
              "       ERROR 0x5 (reported by S/N 42), time  1.500 sec., module 12/3, in flashWrite():99:\n"
              "         verify\n");
}

TEST_F(PrintErrorList, ShowsNoDetailsWithoutVerbose)
{
    ZoSErrorRecord record = error(5, "verify");
    record.timeStamp = 1500;
    record.mainModule = 12;
    record.function = "flashWrite";
    EXPECT_EQ(printed({record}), printed({error(5, "verify")}));
}

TEST_F(PrintErrorList, LeavesUnknownDetailsOut)
{
    ZoSErrorRecord record = error(5, "verify");
    record.line = 99;
    EXPECT_EQ(printed({record}, 7, true), printed({error(5, "verify")}));
}

TEST_F(PrintErrorList, ShowsTheTimeInSecondsWithMilliseconds)
{
    ZoSErrorRecord record = error(5, "");
    record.timeStamp = 1;
    EXPECT_THAT(printed({record}, 7, true), EndsWith("), time  0.001 sec.:\n"));
    record.timeStamp = 12345678;
    EXPECT_THAT(printed({record}, 7, true), EndsWith("), time  12345.678 sec.:\n"));
}

TEST_F(PrintErrorList, ShowsTheModuleWhenEitherNumberIsKnown)
{
    ZoSErrorRecord record = error(5, "");
    record.subModule = 3;
    EXPECT_THAT(printed({record}, 7, true), EndsWith("), module 0/3:\n"));
    record.mainModule = 4;
    record.subModule = 0;
    EXPECT_THAT(printed({record}, 7, true), EndsWith("), module 4/0:\n"));
}

TEST_F(PrintErrorList, PrintsOnlyTheHeadingForAnEmptyText)
{
    EXPECT_EQ(wrapped(""), "");
}

TEST_F(PrintErrorList, TurnsLineEndsIntoBlanks)
{
    EXPECT_EQ(wrapped("one\ntwo\r\nthree"), margin + "one two  three\n");
    EXPECT_EQ(wrapped("\n"), margin + " \n");
}

TEST_F(PrintErrorList, TakesPercentSignsLiterally)
{
    EXPECT_EQ(wrapped("50% %s %n"), margin + "50% %s %n\n");
}

TEST_F(PrintErrorList, PrintsATextOfTheFullWidthAsOneLine)
{
    const std::string text = "abc def " + std::string(63, 'x');
    ASSERT_EQ(text.size(), 71u);
    EXPECT_EQ(wrapped(text), margin + text + "\n");
}

TEST_F(PrintErrorList, CutsATextWithoutBlanksHard)
{
    EXPECT_EQ(wrapped(std::string(200, 'x')), margin + std::string(71, 'x') + "\n" +  //
                                                  margin + std::string(71, 'x') + "\n" + margin + std::string(58, 'x') +
                                                  "\n");
}

TEST_F(PrintErrorList, CutsHardWhenTheOnlyBlankIsTooNearTheStart)
{
    EXPECT_EQ(wrapped("abc " + std::string(68, 'x')), margin + "abc " + std::string(67, 'x') + "\n" + margin + "x\n");
    EXPECT_EQ(wrapped("abcd " + std::string(67, 'x')), margin + "abcd " + std::string(66, 'x') + "\n" + margin + "x\n");
}

TEST_F(PrintErrorList, BreaksAtABlankFromTheSixthCharacterOn)
{
    EXPECT_EQ(wrapped("abcde " + std::string(66, 'x')), margin + "abcde \n" + margin + std::string(66, 'x') + "\n");
}

TEST_F(PrintErrorList, BreaksAfterTheLastBlankThatFits)
{
    const std::string text = repeated("123456789 ", 10);
    EXPECT_EQ(wrapped(text), margin + repeated("123456789 ", 7) + "\n" + margin + repeated("123456789 ", 3) + "\n");
}

TEST_F(PrintErrorList, BreaksAtABlankInTheLastColumn)
{
    const std::string first = std::string(70, 'x') + " ";
    EXPECT_EQ(wrapped(first + "yy"), margin + first + "\n" + margin + "yy\n");
}

TEST_F(PrintErrorList, DoesNotLookForABlankBeyondTheLastColumn)
{
    EXPECT_EQ(wrapped(std::string(71, 'x') + " yy"), margin + std::string(71, 'x') + "\n" + margin + " yy\n");
}

TEST_F(PrintErrorList, CountsFromTheStartOfEachPiece)
{
    // The blank in the second piece is its fourth character: too near to that piece's start.
    const std::string first = std::string(70, 'x') + " ";
    EXPECT_EQ(wrapped(first + "abc " + std::string(68, 'y')),
              margin + first + "\n" + margin + "abc " + std::string(67, 'y') + "\n" + margin + "y\n");
}

TEST_F(PrintErrorList, WrapsForTheIndentThatIsAsked)
{
    EXPECT_THAT(printed({error(1, std::string(70, 'x'))}, 9),
                EndsWith(":\n           " + std::string(69, 'x') + "\n           x\n"));
    EXPECT_THAT(printed({error(1, std::string(78, 'x'))}, 0), EndsWith(":\n  " + std::string(78, 'x') + "\n"));
}

TEST_F(PrintErrorList, GivesEveryPieceToTheCallbackByItself)
{
    ZoNTrellanUpdater::ZoTOptions options = optionsFor(0);
    options.verbose = true;
    ZoCTrellanUpdater updater(options);
    ErrorPool pool;
    ZoSErrorRecord record = error(5, std::string(70, 'x') + " yy");
    record.originNode = 42;
    record.timeStamp = 1500;
    record.mainModule = 12;
    record.function = "flashWrite";
    pool.get().addError(record);
    pool.get().addError(error(6, ""));
    const MessageCapture capture(updater);
    updater.printErrorList(pool, 7);
    EXPECT_EQ(capture.fragments(),
              (std::vector<std::string>{"       ERROR 0x5 (reported by S/N 42)", ", time  1.500 sec.", ", module 12/0",
                                        ", in flashWrite():0", ":\n", margin + std::string(70, 'x') + " \n",
                                        margin + "yy\n", "       ERROR 0x6 (reported by Host PC)", ":\n"}));
}
