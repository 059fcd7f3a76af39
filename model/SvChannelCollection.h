#pragma once

#include "model/SvChannel.h"
#include "model/TickRelayList.h"

namespace TavNA {

using SvChannelCollection = TickRelayList<SvChannel, SvChannel*>;
extern template class TickRelayList<SvChannel, SvChannel*>;

} // namespace TavNA
