// The message tables that are registered in this process.
#pragma once

#include <optional>
#include <string>

#include "libZoErrorHandling/ZoResText.h"

namespace MessageTables {

// Adds `table`, which must stay where it is until it is removed.
void addTable(const ZoResText& table);

// Removes `table`; does nothing when it was not added.
void removeTable(const ZoResText& table);

// The text of `code` in the table added last that has one.
std::optional<std::string> findText(unsigned code);

}  // namespace MessageTables
