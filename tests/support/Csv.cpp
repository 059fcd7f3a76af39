#include "tests/support/Csv.h"

#include <sstream>

namespace TavTest {

CsvRows parseCsv(const std::string& text) {
    CsvRows rows;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        std::istringstream cells(line);
        rows.emplace_back();
        for (std::string cell; std::getline(cells, cell, ',');)
            rows.back().push_back(cell);
    }
    return rows;
}

} // namespace TavTest
