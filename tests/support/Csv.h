#pragma once

#include <string>
#include <vector>

namespace TavTest {

// The inspector's CSV, which it writes without quoting: rows of cells.
using CsvRows = std::vector<std::vector<std::string>>;
CsvRows parseCsv(const std::string& text);

} // namespace TavTest
