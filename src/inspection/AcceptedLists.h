// AcceptedLists: what properties accept, in numbers of eight bytes. Each property is read once, whoever asks for it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/MatchValue.h"
#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateInspection {

class AcceptedLists {
public:
    using List = std::vector<std::uint64_t>;  // ascending, each once; the same value has the same number in all lists

    // What a board can have of what is stated; nothing for null. The property must stay where it is.
    const List& listOf(const ZoNJson::json* stated);

    // True when the lists of two properties, which stay where they are, have a value in common.
    bool intersect(const List& a, const List& b);

private:
    std::uint64_t numberOf(const ZoNUpdateBase::MatchValue& value);

    std::unordered_map<const ZoNJson::json*, List> lists;
    std::unordered_map<std::string, std::uint64_t> texts;
    std::map<std::pair<const List*, const List*>, bool> known;  // of long lists
};

}  // namespace ZoNUpdateInspection
