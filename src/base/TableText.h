// TableText: a table that is to be printed, kept as one text however many rows it has.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ZoNUpdateBase {

class TableText {
public:
    // The cells of a row, from the first to the last; empty ones behind that.
    class Cells {
    public:
        std::string_view take()
        {
            if (left == 0) {
                return {};
            }
            const std::string_view cell(next);
            next += cell.size() + 1;
            --left;
            return cell;
        }

    private:
        friend TableText;
        Cells(const char* next, std::size_t left) : next(next), left(left) {}

        const char* next;
        std::size_t left;
    };

    // Appends a row. Of a cell what stands before its first NUL is shown; its column is as wide as all of it.
    void addRow(const std::vector<std::string>& row)
    {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], row[column].size());
            text.append(row[column].c_str()).push_back('\0');
        }
        sizes.push_back(row.size());
    }

    // Of the columns.
    const std::vector<std::size_t>& columnWidths() const { return widths; }

    // Calls `visit` with the cells of each row.
    template <class Visit>
    void forEachRow(Visit visit) const
    {
        const char* next = text.data();
        for (const std::size_t size : sizes) {
            Cells cells(next, size);
            visit(cells);
            while (cells.left != 0) {
                cells.take();
            }
            next = cells.next;
        }
    }

private:
    std::string text;                // each cell ends with a NUL
    std::vector<std::size_t> sizes;  // of the rows
    std::vector<std::size_t> widths;
};

}  // namespace ZoNUpdateBase
