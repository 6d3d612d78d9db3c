// What the documents say of the project's files: links to them and to headings, and paths.
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/BuildTree.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> projectDocuments()
{
    std::vector<fs::path> documents = {TRELLAN_SOURCE_DIR "/README.md", TRELLAN_SOURCE_DIR "/CONTRIBUTING.md",
                                       TRELLAN_SOURCE_DIR "/SECURITY.md"};
    for (const fs::directory_entry& entry : fs::directory_iterator(TRELLAN_SOURCE_DIR "/docs")) {
        if (entry.path().extension() == ".md") {
            documents.push_back(entry.path());
        }
    }
    return documents;
}

// What a link to the heading says behind "#": small letters, blanks as "-", of other characters only "-" and "_".
std::string anchorOf(const std::string& heading)
{
    std::string anchor;
    for (const char character : heading) {
        const auto byte = static_cast<unsigned char>(character);
        if (std::isalnum(byte) != 0 || character == '-' || character == '_') {
            anchor += static_cast<char>(std::tolower(byte));
        } else if (character == ' ') {
            anchor += '-';
        }
    }
    return anchor;
}

// The document's lines that are not in a block of code.
std::vector<std::string> textLines(const fs::path& document)
{
    std::vector<std::string> result;
    std::istringstream lines(readText(document));
    bool inBlock = false;
    for (std::string line; std::getline(lines, line);) {
        const bool isFence = line.starts_with("```");
        inBlock ^= isFence;
        if (!inBlock && !isFence) {
            result.push_back(line);
        }
    }
    return result;
}

std::set<std::string> anchorsOf(const fs::path& document)
{
    std::set<std::string> anchors;
    for (const std::string& line : textLines(document)) {
        const std::size_t title = line.find_first_not_of('#');
        if (title != 0 && title != std::string::npos && line[title] == ' ') {
            anchors.insert(anchorOf(line.substr(title + 1)));
        }
    }
    return anchors;
}

// Checks the links of one line, and returns how many there are.
std::ptrdiff_t checkLinks(const fs::path& document, const std::string& line)
{
    static const std::regex link(R"(\]\(([^)#]*)(#([^)]*))?\))");
    const std::sregex_iterator first(line.begin(), line.end(), link);
    for (auto found = first; found != std::sregex_iterator(); ++found) {
        const std::string name = (*found)[1];
        const fs::path file = name.empty() ? document : document.parent_path() / name;
        EXPECT_TRUE(fs::exists(file)) << document << ": " << name;
        if ((*found)[3].matched && fs::exists(file)) {
            EXPECT_TRUE(anchorsOf(file).contains((*found)[3])) << document << ": " << name << (*found)[2];
        }
    }
    return std::distance(first, std::sregex_iterator());
}

// Checks the paths that a line names in the project's folders, and returns how many there are.
std::ptrdiff_t checkPaths(const fs::path& document, const std::string& line)
{
    static const std::regex path(
        R"(`((include|platform|src|simulation|tool|tests|examples|docs|bench|cmake)/[A-Za-z0-9_./-]*)`)");
    const std::sregex_iterator first(line.begin(), line.end(), path);
    for (auto found = first; found != std::sregex_iterator(); ++found) {
        EXPECT_TRUE(fs::exists(fs::path(TRELLAN_SOURCE_DIR) / (*found)[1].str())) << document << ": " << (*found)[1];
    }
    return std::distance(first, std::sregex_iterator());
}

}  // namespace

TEST(Links, LeadToFilesAndHeadingsThatExist)
{
    std::ptrdiff_t links = 0;
    for (const fs::path& document : projectDocuments()) {
        for (const std::string& line : textLines(document)) {
            links += checkLinks(document, line);
        }
    }
    EXPECT_GT(links, 10);
}

TEST(Paths, InTheDocumentsExist)
{
    std::ptrdiff_t paths = 0;
    for (const fs::path& document : projectDocuments()) {
        for (const std::string& line : textLines(document)) {
            paths += checkPaths(document, line);
        }
    }
    EXPECT_GT(paths, 10);
}
