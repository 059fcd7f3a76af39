#pragma once

#include "tools/gen/Scenario.h"

#include <string>
#include <vector>

namespace TavGen {

// Fields of every control block the configuration can be made to disagree on
// with the capture: confRev, appid, dst, vlan, datSet, entries, smpRate,
// nofASDU, id.
const std::vector<std::string>& sclMismatchFields();

// Writes the substation configuration (SCL) of what the scenario publishes:
// one device for the SV streams, one per GOOSE stream, their addresses, data
// sets and types; the `mismatches` fields differ from the capture in every
// control block.
void writeScl(const std::string& path, const Scenario& scenario,
              const std::vector<std::string>& mismatches);

} // namespace TavGen
