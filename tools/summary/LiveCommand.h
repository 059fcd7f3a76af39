#pragma once

#include <optional>
#include <string>
#include <vector>

namespace TavInspect {

// tavna-inspect --interface IF [--seconds S] [--write OUT.pcapng] ...: takes
// those options out of `args`, captures SV and GOOSE frames on IF for S
// seconds (or until Ctrl+C), writes them to OUT (else to a temporary file)
// and puts that file where the options were, so that the rest reports on it
// as on any file. Nothing changes without --interface. An exit code when the
// capture failed or the options were wrong, else nothing.
std::optional<int> captureFromInterface(std::vector<std::string>& args);

} // namespace TavInspect
