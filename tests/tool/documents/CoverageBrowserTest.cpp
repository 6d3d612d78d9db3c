// The page that shows a coverage, in a real browser: a script that is added to it does what a user would.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "support/Process.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"

using nlohmann::ordered_json;

namespace {

constexpr const char* browser = "/usr/bin/chromium";

#define SKIP_WITHOUT_BROWSER()                                                                   \
    if (!std::filesystem::exists(browser)) {                                                     \
        GTEST_SKIP() << "NOT TESTED: the page in a browser; there is no " << browser << " here"; \
    }

// What the test's script sees and does. `key` and `click` are what a user does; `tell` is what a test gets.
constexpr const char* tools = R"(<script>
const told = {};
const tell = (name, value) => { told[name] = value; };
const key = (target, name) => target.dispatchEvent(new KeyboardEvent('keydown', {key: name, bubbles: true, cancelable: true}));
const type = (id, text) => { byId(id).value = text; byId(id).dispatchEvent(new Event('input', {bubbles: true})); };
const cellAt = (row, column) => grid.tBodies[0].rows[row].cells[column + 2];
const shownTargets = () => [...grid.tBodies[0].rows].filter(row => row.offsetParent).map(row => row.cells[0].textContent);
const shownKinds = () => [...grid.tHead.rows[0].cells].slice(2).filter(cell => cell.offsetParent).map(cell => cell.textContent);
const isOpen = () => byId('explanation').offsetParent !== null || getComputedStyle(byId('explanation')).display !== 'none';
)";

class CoverageInBrowser : public testing::Test {
protected:
    // Three targets: one supported, one not, one that cannot be read; five kinds.
    std::string page() const
    {
        const auto element = [](unsigned id, const std::string& version) {
            return updateElement(id, {{"NAME", "E"}, {"VERSION", version}, {"CHECKSUM_CRC32", 1}});
        };
        const auto write = [&](const std::string& name, std::vector<ordered_json> boards) {
            writeText(folder.path() / name, target(std::move(boards)).dump());
        };
        write("a.json", {board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {element(1, "1.0"), element(2, "2.3.4")}),
                         board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "IO7"}}, {element(1, "1.0"), element(1, "2.3.4")})});
        write("b.json", {board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {element(1, "1.0"), element(9, "1.0")}),
                         board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "<b>IO8</b>"}}, {element(1, "1.0")})});
        writeText(folder.path() / "c.json", "{}");
        const TestArchive archive(description({fileEntry("one.bin", {{"id", 1}}), fileEntry("two.bin", {{"id", 2}}),
                                               fileEntry("io.bin", {{"boardType", "IO7"}})}));
        const std::string file = (folder.path() / "page.html").string();
        ran({"coverage", archive.path(), folder.path().string(), "--html", file});
        return readText(file);
    }

    // Of so many targets, each of which has an element of each of so many kinds.
    std::string largePage(unsigned targetCount, unsigned kindCount) const
    {
        std::string text = page();
        ordered_json kinds = ordered_json::array();
        ordered_json cells = ordered_json::array();
        for (unsigned i = 0; i < kindCount; ++i) {
            const ordered_json keys = {
                {"boardType", "B" + std::to_string(i)}, {"boardVariant", nullptr}, {"id", i}, {"targetPath", nullptr}};
            kinds.push_back({{"keys", keys}, {"elements", targetCount}, {"files", ordered_json::array()}});
            cells.push_back({{"kind", i}, {"counts", {{"update", 1}}}});
        }
        ordered_json targets = ordered_json::array();
        for (unsigned i = 0; i < targetCount; ++i) {
            targets.push_back({{"target", "t" + std::to_string(i) + ".json"},
                               {"supported", true},
                               {"counts", ordered_json::object()},
                               {"error", nullptr},
                               {"kinds", cells}});
        }
        const ordered_json document = {{"targets", targets},
                                       {"files", ordered_json::array()},
                                       {"unused", ordered_json::array()},
                                       {"noFile", ordered_json::array()},
                                       {"kinds", kinds}};
        const std::string begin = "id=\"document\">";
        const std::size_t from = text.find(begin) + begin.size();
        text.replace(from, text.find("</script>", from) - from, document.dump());
        return text;
    }

    // Opens the page from a file, without a network, and runs the script in it; gives what that has told.
    ordered_json toldBy(std::string text, const std::string& script) const
    {
        const std::size_t end = text.rfind("</body>");
        text.insert(end, std::string(tools) + script +
                             "\nconst result = document.createElement('pre'); result.id = 'told';"
                             "result.textContent = 'TOLD' + JSON.stringify(told).replaceAll('<', "
                             "'\\\\u003c').replaceAll('>', '\\\\u003e') + 'END';"
                             "document.body.append(result);</script>");
        const std::filesystem::path file = folder.path() / "tried.html";
        writeText(file, text);
        const ProcessResult result =
            runProcess(browser,
                       {"--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                        "--user-data-dir=" + (folder.path() / "profile").string(), "--dump-dom",
                        "--host-resolver-rules=MAP * ~NOTFOUND", "file://" + file.string()},
                       folder.path(), {"HOME=" + folder.path().string()});
        const std::size_t at = result.output.rfind("TOLD{");
        const std::size_t stop = result.output.rfind("END</pre>");
        if (at == std::string::npos || stop == std::string::npos) {
            ADD_FAILURE() << result.errors << result.output.substr(0, 2000);
            return ordered_json::object();
        }
        return ordered_json::parse(result.output.substr(at + 4, stop - at - 4));
    }

    const TempDir folder;
};

}  // namespace

TEST_F(CoverageInBrowser, ShowsEachTargetAndEachKindWithSigns)
{
    SKIP_WITHOUT_BROWSER();
    const ordered_json told = toldBy(page(), R"(
        tell('targets', shownTargets().map(name => name.split('/').pop()));
        tell('kinds', shownKinds());
        tell('cells', [...grid.tBodies[0].rows].map(row => [...row.cells].slice(1).map(cell => cell.textContent)));
        tell('classes', [...grid.tBodies[0].rows[1].cells].slice(2).map(cell => cell.className));
        tell('summary', byId('summary').textContent);
        tell('bold', document.querySelectorAll('b').length);)");
    EXPECT_EQ(told["targets"], ordered_json::parse(R"(["a.json", "b.json", "c.json"])"));
    EXPECT_EQ(told["kinds"],
              ordered_json::parse(R"(["<b>IO8</b> id 1", "IO7 id 1", "KR5120 id 1", "KR5120 id 2", "KR5120 id 9"])"));
    EXPECT_EQ(told["cells"][0], ordered_json::parse(R"(["yes", "", "↑2+", "↑", "✓", ""])"));
    EXPECT_EQ(told["cells"][1], ordered_json::parse(R"(["NO", "✗", "", "■", "", "✗"])"));
    EXPECT_NE(told["cells"][2][0].get<std::string>().find("cannot be read"), std::string::npos);
    EXPECT_EQ(told["classes"], ordered_json::parse(R"(["cell noFile", "", "cell blocked", "", "cell noFile"])"));
    EXPECT_EQ(told["summary"],
              "3 targets: 1 supported, 1 not supported, 1 that cannot be read. 0 of 3 entries are used by nothing.");
    EXPECT_EQ(told["bold"], 0);
}

TEST_F(CoverageInBrowser, FiltersAndSearches)
{
    SKIP_WITHOUT_BROWSER();
    const ordered_json told = toldBy(page(), R"(
        const targets = () => shownTargets().map(name => name.split('/').pop());
        type('search', 'A.JSON'); tell('search', targets());
        type('search', ''); type('support', 'no'); tell('support', targets());
        type('support', 'unread'); tell('unread', targets());
        type('support', ''); type('state', 'noFile'); tell('state', targets());
        type('state', ''); type('kinds', 'io.bin'); tell('file', shownKinds());
        type('kinds', 'id 9'); tell('keys', shownKinds());
        tell('shown', byId('shown').textContent);
        type('kinds', ''); tell('all', [targets().length, shownKinds().length]);)");
    EXPECT_EQ(told["search"], ordered_json::parse(R"(["a.json"])"));
    EXPECT_EQ(told["support"], ordered_json::parse(R"(["b.json"])"));
    EXPECT_EQ(told["unread"], ordered_json::parse(R"(["c.json"])"));
    EXPECT_EQ(told["state"], ordered_json::parse(R"(["b.json"])"));
    EXPECT_EQ(told["file"], ordered_json::parse(R"(["IO7 id 1"])"));
    EXPECT_EQ(told["keys"], ordered_json::parse(R"(["KR5120 id 9"])"));
    EXPECT_EQ(told["shown"], "3 of 3 targets, 1 of 5 kinds shown");
    EXPECT_EQ(told["all"], ordered_json::parse("[3, 5]"));
}

TEST_F(CoverageInBrowser, ExplainsACellByMouseAndByKeyboard)
{
    SKIP_WITHOUT_BROWSER();
    const ordered_json told = toldBy(page(), R"(
        tell('before', isOpen());
        cellAt(0, 1).click();
        tell('clicked', isOpen()); tell('text', byId('text').textContent);
        key(document.activeElement, 'Escape');
        tell('escaped', isOpen()); tell('focus', document.activeElement === cellAt(0, 1));
        key(document.activeElement, 'ArrowRight'); tell('right', document.activeElement === cellAt(0, 2));
        key(document.activeElement, 'ArrowDown'); tell('down', document.activeElement === cellAt(1, 2));
        key(document.activeElement, 'Enter');
        tell('entered', isOpen()); tell('heading', byId('heading').textContent.split('/').pop());
        key(document.activeElement, 'ArrowRight'); tell('moved', document.activeElement === cellAt(1, 4));
        tell('follows', byId('text').textContent);
        key(document.activeElement, 'ArrowDown'); tell('edge', document.activeElement === cellAt(1, 4));
        byId('close').click(); tell('closed', isOpen());
        tell('stops', [...grid.querySelectorAll('[tabindex="0"]')].length);)");
    EXPECT_EQ(told["before"], false);
    EXPECT_EQ(told["clicked"], true);
    const std::string text = told["text"];
    for (const char* const part :
         {"1 element to update.", "1 element up to date.", "files[2] io.bin (2.3.4)", "boardTypeIO7", "id1"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << " in " << text;
    }
    EXPECT_EQ(told["escaped"], false);
    EXPECT_EQ(told["focus"], true);
    EXPECT_EQ(told["right"], true);
    EXPECT_EQ(told["down"], true);
    EXPECT_EQ(told["entered"], true);
    EXPECT_EQ(told["heading"], "b.json: KR5120 id 1");
    EXPECT_EQ(told["moved"], true);
    EXPECT_NE(told["follows"].get<std::string>().find("No entry of the archive fits."), std::string::npos);
    EXPECT_EQ(told["edge"], true);
    EXPECT_EQ(told["closed"], false);
    EXPECT_EQ(told["stops"], 1);
}

TEST_F(CoverageInBrowser, PrintsOnA4)
{
    SKIP_WITHOUT_BROWSER();
    const std::filesystem::path file = folder.path() / "printed.html";
    const std::filesystem::path printed = folder.path() / "printed.pdf";
    writeText(file, page());
    runProcess(browser,
               {"--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                "--user-data-dir=" + (folder.path() / "profile").string(), "--print-to-pdf=" + printed.string(),
                "file://" + file.string()},
               folder.path(), {"HOME=" + folder.path().string()});
    // 297 by 210 millimetres are 841.9 by 595.3 points; the browser rounds.
    EXPECT_NE(readText(printed).find("/MediaBox [0 0 841.9"), std::string::npos);
}

TEST_F(CoverageInBrowser, PrintsSeveralTablesWhereASheetIsNotWideEnoughForAllKinds)
{
    SKIP_WITHOUT_BROWSER();
    const ordered_json told = toldBy(largePage(3, 90), R"(
        const print = name => {
            dispatchEvent(new Event('beforeprint'));
            tell(name, [...byId('paper').querySelectorAll('table')].map(
                table => [...table.rows].map(row => [row.cells[0], row.cells[2], row.cells[row.cells.length - 1]].map(
                    cell => cell.textContent))));
            dispatchEvent(new Event('afterprint'));
        };
        print('all');
        type('kinds', 'id 8'); print('few');
        type('kinds', ''); type('search', 't1'); print('one');
        tell('after', byId('paper').childElementCount);)");
    EXPECT_EQ(told["all"], ordered_json::parse(R"([
        [["Target", "B0 id 0", "B39 id 39"], ["t0.json", "↑", "↑"], ["t1.json", "↑", "↑"], ["t2.json", "↑", "↑"]],
        [["Target", "B40 id 40", "B79 id 79"], ["t0.json", "↑", "↑"], ["t1.json", "↑", "↑"], ["t2.json", "↑", "↑"]],
        [["Target", "B80 id 80", "B89 id 89"], ["t0.json", "↑", "↑"], ["t1.json", "↑", "↑"],
         ["t2.json", "↑", "↑"]]])"));
    EXPECT_EQ(told["few"], ordered_json::array());
    EXPECT_EQ(told["one"].size(), 3u);
    EXPECT_EQ(told["one"][2], ordered_json::parse(R"([["Target", "B80 id 80", "B89 id 89"], ["t1.json", "↑", "↑"]])"));
    EXPECT_EQ(told["after"], 0);
}

TEST_F(CoverageInBrowser, ShowsWhatTurnsTextAroundOrBreaksALineAsEscapes)
{
    SKIP_WITHOUT_BROWSER();
    std::string text = largePage(1, 1);
    const auto replace = [&](const std::string& from, const std::string& to) {
        text.replace(text.find(from), from.size(), to);
    };
    replace("t0.json", R"(a\u202eb\u2066c\u2028d\u2029e\u0007f)");
    replace(R"("B0")", R"("X\u200fY")");
    const ordered_json told = toldBy(text, R"(
        const row = grid.tBodies[0].rows[0];
        tell('target', row.cells[0].textContent); tell('title', row.cells[0].title);
        tell('kind', shownKinds()); tell('label', cellAt(0, 0).getAttribute('aria-label'));
        cellAt(0, 0).click(); tell('heading', byId('heading').textContent);)");
    EXPECT_EQ(told["target"], R"(a\u202eb\u2066c\u2028d\u2029e\u0007f)");
    EXPECT_EQ(told["title"], R"(a\u202eb\u2066c\u2028d\u2029e\u0007f)");
    EXPECT_EQ(told["kind"], ordered_json::array({R"(X\u200fY id 0)"}));
    EXPECT_EQ(told["label"], R"(a\u202eb\u2066c\u2028d\u2029e\u0007f, X\u200fY id 0: 1 to update)");
    EXPECT_EQ(told["heading"], R"(a\u202eb\u2066c\u2028d\u2029e\u0007f: X\u200fY id 0)");
}

TEST_F(CoverageInBrowser, StaysFluentWith500TargetsAnd40Kinds)
{
    SKIP_WITHOUT_BROWSER();
    const std::string text = largePage(500, 40);
    const ordered_json told = toldBy(text, R"(
        const layout = () => document.body.offsetHeight;
        const timed = work => { layout(); const start = performance.now(); work(); layout(); return performance.now() - start; };
        tell('cells', document.querySelectorAll('.cell').length);
        tell('filter', Math.min(timed(() => type('search', 't4')), timed(() => type('search', 't3'))));
        tell('shown', shownTargets().length);
        tell('open', Math.min(timed(() => cellAt(30, 0).click()), timed(() => cellAt(31, 3).click())));)");
    EXPECT_EQ(told["cells"], 20000);
    EXPECT_EQ(told["shown"], 111);
    EXPECT_LT(told["filter"].get<double>(), 1000.0) << "milliseconds";
    EXPECT_LT(told["open"].get<double>(), 500.0) << "milliseconds";
}
