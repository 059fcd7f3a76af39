#pragma once

#include "measure/ChannelSpec.h"
#include "platform/parser/StreamRecords.h"

#include <vector>

namespace TavNA {

// Every channel of an SV stream as the measurements take it: named, typed and
// scaled exactly as the stream list and the plot show it.
std::vector<TavMeasure::ChannelSpec> measureChannels(const TavIec61850Parser::Sv& stream);

} // namespace TavNA
