#pragma once

#include "tools/gen/Scenario.h"

#include <string>

namespace TavGen {

// Many merging units and test sets publish all their SV streams from one
// port: one source and destination MAC, one APPID and VLAN, the streams told
// apart only by their svID. This option writes the SV streams that way.
struct SharedPublisher {
    bool on = false;
};

// True when `name` is this option (it takes no value).
bool applySharedPublisherFlag(SharedPublisher& s, const std::string& name);
// Gives every SV stream the first one's addresses, APPID and data set name.
void applySharedPublisher(const SharedPublisher& s, Scenario& scenario);

} // namespace TavGen
