// printTable: columns of padded cells with a rule below the first row.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Updating.h"

namespace {

using Rows = std::vector<std::vector<std::string>>;

ZoNUpdateBase::TableText tableOf(const Rows& rows)
{
    ZoNUpdateBase::TableText table;
    for (const auto& row : rows) {
        table.addRow(row);
    }
    return table;
}

class PrintTable : public Updating {
protected:
    std::string printed(const Rows& rows)
    {
        const MessageCapture capture(updater);
        updater.printTable(tableOf(rows));
        return capture.text();
    }

    ZoCTrellanUpdater updater{optionsFor(0)};
};

}  // namespace

TEST_F(PrintTable, PrintsNothingWithoutRows)
{
    EXPECT_EQ(printed({}), "");
}

TEST_F(PrintTable, TakesTheHeadersWidthsWhereTheHeaderIsWider)
{
    EXPECT_EQ(printed({{"Name", "Version"}, {"a", "1.0"}, {"bc", ""}}),
              "Name | Version\n"
              "--------------\n"
              "a    | 1.0    \n"
              "bc   |        \n");
}

TEST_F(PrintTable, TakesTheWidestCellOfEachColumn)
{
    EXPECT_EQ(printed({{"N", "V"}, {"abc", "1"}, {"d", "12345"}}),
              "N   | V    \n"
              "-----------\n"
              "abc | 1    \n"
              "d   | 12345\n");
}

TEST_F(PrintTable, PrintsRowsOfAllLengthsInTheirOrder)
{
    Rows rows;
    std::string expected;
    for (std::size_t i = 0; i < 400; ++i) {
        const std::string cell(i * 7919 % 1999, static_cast<char>('a' + i % 26));
        rows.push_back({});
        rows.push_back({cell, "x"});
        expected += std::string(1996, ' ') + " |  \n" + cell + std::string(1996 - cell.size(), ' ') + " | x\n";
        if (i == 0) {
            expected.insert(expected.find('\n') + 1, std::string(2000, '-') + "\n");
        }
    }
    EXPECT_EQ(printed(rows), expected);
}

TEST_F(PrintTable, RuleIsAsLongAsTheHeaderLine)
{
    EXPECT_EQ(printed({{"one", "two", "three"}}),
              "one | two | three\n"
              "-----------------\n");
}

TEST_F(PrintTable, PadsMissingCellsAndKeepsTheirSeparators)
{
    EXPECT_EQ(printed({{"A", "BB", "CCC"}, {"1"}, {}}),
              "A | BB | CCC\n"
              "------------\n"
              "1 |    |    \n"
              "  |    |    \n");
}

TEST_F(PrintTable, MakesRoomForRowsLongerThanTheHeader)
{
    EXPECT_EQ(printed({{"A"}, {"1", "[INVALID]"}, {"2"}}),
              "A |          \n"
              "-------------\n"
              "1 | [INVALID]\n"
              "2 |          \n");
}

TEST_F(PrintTable, PrintsOneColumnWithoutSeparators)
{
    EXPECT_EQ(printed({{"A"}, {"long"}}),
              "A   \n"
              "----\n"
              "long\n");
}

TEST_F(PrintTable, KeepsTheSeparatorsOfEmptyColumns)
{
    EXPECT_EQ(printed({{"", ""}, {"", ""}}),
              " | \n"
              "---\n"
              " | \n");
}

TEST_F(PrintTable, PrintsRowsWithoutCellsAsLineEndsWithoutARule)
{
    EXPECT_EQ(printed({{}}), "\n");
    EXPECT_EQ(printed({{}, {}, {}}), "\n\n\n");
}

TEST_F(PrintTable, MeasuresBytes)
{
    EXPECT_EQ(printed({{"caf\xC3\xA9", "x"}, {"a", "y"}}),
              "caf\xC3\xA9 | x\n"
              "---------\n"
              "a     | y\n");
}

TEST_F(PrintTable, TakesCellsLiterally)
{
    EXPECT_EQ(printed({{"%s%n", "100%"}}),
              "%s%n | 100%\n"
              "-----------\n");
}

TEST_F(PrintTable, GivesEveryPieceToTheCallbackByItself)
{
    const MessageCapture capture(updater);
    updater.printTable(tableOf({{"A", "B"}, {"1", "22"}}));
    EXPECT_EQ(capture.fragments(), (std::vector<std::string>{"A", " | ", "B ", "\n",              //
                                                             "-", "-", "-", "-", "-", "-", "\n",  //
                                                             "1", " | ", "22", "\n"}));
}

TEST_F(PrintTable, GoesToStandardOutputWithoutACallback)
{
    testing::internal::CaptureStdout();
    updater.printTable(tableOf({{"A"}, {"1"}}));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "A\n-\n1\n");
}
