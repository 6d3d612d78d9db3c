// TableText: a table that is to be printed, kept as text in few pieces however many rows it has.
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
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
        std::size_t needed = row.size();
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], row[column].size());
            needed += row[column].size();
        }
        std::string& text = pieceFor(needed);
        for (const std::string& cell : row) {
            text.append(cell.c_str()).push_back('\0');
        }
        sizes.push_back(row.size());
    }

    // Of the columns.
    const std::vector<std::size_t>& columnWidths() const { return widths; }

    // Calls `visit` with the cells of each row, of which it must take all.
    template <class Visit>
    void forEachRow(Visit visit) const
    {
        auto piece = pieces.begin();
        const char* next = pieces.empty() ? nullptr : piece->data();
        for (const std::size_t size : sizes) {
            if (size != 0 && next == piece->data() + piece->size()) {
                next = (++piece)->data();
            }
            Cells cells(next, size);
            visit(cells);
            next = cells.next;
        }
    }

private:
    static constexpr std::size_t largestPiece = std::size_t{64} * 1024;

    // One with room for a row that needs so many bytes. No piece grows beyond its room: all of it would for a while be
    // there twice.
    std::string& pieceFor(std::size_t needed)
    {
        if (pieces.empty() || pieces.back().capacity() - pieces.back().size() < needed) {
            const std::size_t usual = pieces.empty() ? 0 : std::min(2 * pieces.back().capacity(), largestPiece);
            pieces.emplace_back().reserve(std::max(usual, needed));
        }
        return pieces.back();
    }

    std::deque<std::string> pieces;  // of whole rows; each cell ends with a NUL
    std::vector<std::size_t> sizes;  // of the rows
    std::vector<std::size_t> widths;
};

}  // namespace ZoNUpdateBase
