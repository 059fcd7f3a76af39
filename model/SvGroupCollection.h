#pragma once

#include "model/SvGroup.h"
#include "model/TickRelayList.h"

namespace TavNA {

using SvGroupCollection = TickRelayList<SvGroup, SvChannel*, SvGroup*>;
extern template class TickRelayList<SvGroup, SvChannel*, SvGroup*>;

} // namespace TavNA
