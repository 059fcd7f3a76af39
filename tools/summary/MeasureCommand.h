#pragma once

#include <string>
#include <vector>

namespace TavInspect {

// tavna-inspect --measure [--from S --to S] [--json] FILE...
bool isMeasureCommand(const std::vector<std::string>& args);
// Returns the exit code: 0 measured, 1 a file could not be read, 2 wrong usage.
int runMeasureCommand(const std::vector<std::string>& args);

} // namespace TavInspect
