// Tables that are printed, read back.
#pragma once

#include <string>
#include <vector>

using TableRows = std::vector<std::vector<std::string>>;

// The rows below the header of the table that `text` is, cell by cell, without the blanks that fill them up.
TableRows tableRows(const std::string& text);
