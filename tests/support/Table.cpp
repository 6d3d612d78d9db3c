#include "support/Table.h"

#include <sstream>

namespace {

const std::string separator = " | ";

std::string trimmed(const std::string& cell)
{
    return cell.substr(0, cell.find_last_not_of(' ') + 1);
}

std::vector<std::string> cellsOf(const std::string& line)
{
    std::vector<std::string> cells;
    std::size_t begin = 0;
    for (std::size_t end; (end = line.find(separator, begin)) != std::string::npos; begin = end + separator.size()) {
        cells.push_back(trimmed(line.substr(begin, end - begin)));
    }
    cells.push_back(trimmed(line.substr(begin)));
    return cells;
}

}  // namespace

TableRows tableRows(const std::string& text)
{
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, line);  // the header
    std::getline(lines, line);  // and the rule below it
    TableRows rows;
    while (std::getline(lines, line)) {
        rows.push_back(cellsOf(line));
    }
    return rows;
}
