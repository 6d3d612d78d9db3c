// Which of many offers is the first that accepts what is sought, where offers accept long lists of values.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/NumberRow.h"

namespace ZoNUpdateAssignment {

using ZoNUpdateBase::listedProperties;
using ZoNUpdateBase::NumberRow;

using NumberLists = std::array<std::span<const std::uint32_t>, listedProperties>;  // ascending, each number once

struct ListOffer {
    std::uint32_t position;
    NumberLists accepted;
};

struct SoughtRow {
    NumberRow numbers;
    std::optional<std::uint32_t> position;  // of the first offer that accepts all the numbers; nothing when none does
};

class ListSearch {
public:
    // All numbers of a property are below its end.
    explicit ListSearch(const NumberRow& ends);
    ~ListSearch();

    // Lets each row have the first that accepts it, of `offers` and the one that it has. The offers must be in the
    // order of their positions. Takes a time that grows with the lists, as far as rows have what is in them, and with
    // the rows times a five-hundredth of the offers.
    void search(std::span<SoughtRow> rows, std::span<const ListOffer> offers);

private:
    class Column;
    struct OpenRow;

    void searchBlock(std::vector<OpenRow>& openRows, std::span<const ListOffer> block);

    std::vector<Column> columns;  // one for each property
};

}  // namespace ZoNUpdateAssignment
