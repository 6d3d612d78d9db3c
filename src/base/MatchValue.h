// What is compared where update files are matched with elements.
#pragma once

#include <string>
#include <variant>

namespace ZoNUpdateBase {

// Null, a text or an unsigned number. Values of different kinds are never equal.
using MatchValue = std::variant<std::monostate, std::string, unsigned long long>;

}  // namespace ZoNUpdateBase
