#pragma once

#include <string>
#include <vector>

namespace TavInspect {

// tavna-inspect --comtrade OUT [--streams K,L,...] [--from S --to S]
//               [--rev 1999|2013] [--ascii] [--trigger T] FILE...
bool isComtradeCommand(const std::vector<std::string>& args);
// Returns the exit code: 0 written, 1 a file or the export failed, 2 wrong usage.
int runComtradeCommand(const std::vector<std::string>& args);

} // namespace TavInspect
