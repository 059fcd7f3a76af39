#pragma once

#include <string>
#include <vector>

namespace TavTest {

struct ToolResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

// Runs a tool built beside the tests (TAVNA_GEN, TAVNA_INSPECT) and keeps both
// of its output streams.
ToolResult runTool(const char* envName, const std::vector<std::string>& args);

// Splits CSV text into rows of fields; no quoting, as the inspector writes none.
std::vector<std::vector<std::string>> parseCsv(const std::string& text);

} // namespace TavTest
