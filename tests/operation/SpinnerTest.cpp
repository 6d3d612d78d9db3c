// The progress line's spinner: one position for the whole library.
#include <cstdio>
#include <cstdlib>
#include <regex>

#include "operation/OperationFixture.h"
#include "support/BuildTree.h"

using ::testing::ElementsAre;

namespace {

// The spinners of all progress lines of `text`, in their order.
std::string spinnersOf(const std::string& text)
{
    static const std::regex line("% (.) *\r");
    std::string spinners;
    for (std::sregex_iterator found(text.begin(), text.end(), line); found != std::sregex_iterator(); ++found) {
        spinners += found->str(1);
    }
    return spinners;
}

// `count` spinners that follow on `last`.
std::string after(char last, std::size_t count)
{
    static const std::string table = "-\\|/";
    const std::size_t position = table.find(last);
    EXPECT_NE(position, std::string::npos) << "not a spinner: " << last;
    std::string spinners;
    for (std::size_t i = 1; i <= count; ++i) {
        spinners += table[(position + i) % 4];
    }
    return spinners;
}

// What the command prints on standard output.
std::string outputOf(const std::string& command)
{
    std::string output;
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
    for (int character = std::fgetc(pipe.get()); character != EOF; character = std::fgetc(pipe.get())) {
        output += static_cast<char>(character);
    }
    return output;
}

}  // namespace

class Spinner : public OperationFixture {
protected:
    // An element whose phase takes seven passes.
    void addSlowElement(unsigned board, unsigned sequence = 1)
    {
        const Json poll = {{"status", 1}, {"done", 1}, {"total", 4}};
        scriptOf(board, 1)["polls"] = Json::array({poll, poll, poll, poll, poll});
        addElement(board, 1, sequence);
    }
};

TEST_F(Spinner, StartsWithADashAndTurnsThroughFourPositions)
{
    addSlowElement(1);
    prepare();

    const std::string output = outputOf("'" TRELLAN_TOOL "' update '" + archive->path() + "' --target '" +
                                        simulated->path().string() + "' --no-check");

    EXPECT_EQ(spinnersOf(output), "-\\|/-\\|") << output;
}

TEST_F(Spinner, GoesOnInTheNextPhase)
{
    options.noProgress = false;
    addSlowElement(1, 1);
    addSlowElement(2, 2);
    prepare();

    EXPECT_TRUE(update());

    const std::string spinners = spinnersOf(journal->text());
    ASSERT_EQ(spinners.size(), 14u);
    EXPECT_EQ(spinners.substr(1), after(spinners[0], 13));
}

TEST_F(Spinner, GoesOnInTheNextUpdater)
{
    options.noProgress = false;
    addElement(1, 1);
    prepare();
    ASSERT_TRUE(update());
    const std::string first = spinnersOf(journal->text());
    ASSERT_EQ(first.size(), 2u);

    prepare();
    ASSERT_TRUE(update());

    EXPECT_EQ(first.substr(1), after(first[0], 1));
    EXPECT_EQ(spinnersOf(journal->text()), after(first[1], 2));
}

TEST_F(Spinner, StandsStillWithoutProgressLines)
{
    options.noProgress = false;
    addElement(1, 1);
    prepare();
    ASSERT_TRUE(update());
    const std::string first = spinnersOf(journal->text());
    ASSERT_EQ(first.size(), 2u);

    options.noProgress = true;
    prepare();
    ASSERT_TRUE(update());
    EXPECT_EQ(spinnersOf(journal->text()), "");

    options.noProgress = false;
    prepare();
    ASSERT_TRUE(update());
    EXPECT_EQ(spinnersOf(journal->text()), after(first[1], 2));
}
