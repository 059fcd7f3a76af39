#pragma once

#include "model/GooseGroup.h"
#include "model/TickRelayList.h"

namespace TavNA {

using GooseGroupCollection = TickRelayList<GooseGroup, GooseChannel*, GooseGroup*>;
extern template class TickRelayList<GooseGroup, GooseChannel*, GooseGroup*>;

} // namespace TavNA
