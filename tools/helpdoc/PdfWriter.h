#pragma once

#include "tools/helpdoc/HelpText.h"

#include <string>
#include <vector>

namespace TavHelpDoc {

// Lays the blocks out on A4 pages and writes them as a PDF; throws
// std::runtime_error naming the file when it cannot be written.
void writePdf(const std::vector<Block>& blocks, const std::string& path);

} // namespace TavHelpDoc
