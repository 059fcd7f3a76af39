#pragma once

#include "model/GooseChannel.h"
#include "model/TickRelayList.h"

namespace TavNA {

using GooseChannelCollection = TickRelayList<GooseChannel, GooseChannel*>;
extern template class TickRelayList<GooseChannel, GooseChannel*>;

} // namespace TavNA
