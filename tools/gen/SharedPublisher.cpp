#include "tools/gen/SharedPublisher.h"

namespace TavGen {

bool applySharedPublisherFlag(SharedPublisher& s, const std::string& name) {
    if (name != "--shared-publisher")
        return false;
    s.on = true;
    return true;
}

void applySharedPublisher(const SharedPublisher& s, Scenario& scenario) {
    if (!s.on || scenario.sv.empty())
        return;
    const SvStreamConfig first = scenario.sv.front();
    for (SvStreamConfig& sv : scenario.sv) {
        sv.src = first.src;
        sv.dst = first.dst;
        sv.appId = first.appId;
        sv.datSet = first.datSet;
    }
}

} // namespace TavGen
