#pragma once

#include "tools/gen/Scenario.h"

#include <string>

namespace TavGen {

// Two bays of merging units; at 0.5 s a phase-A fault in bay 1 raises its
// current tenfold, protection trips 20 ms later and the breaker opens 60 ms
// after the trip. One second long.
Scenario demoScenario(Container container);

// Writes demo_substation.pcap and demo_substation.pcapng into `dir`, creating it.
void writeDemo(const std::string& dir);

} // namespace TavGen
