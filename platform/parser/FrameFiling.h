#pragma once

#include "platform/parser/ContainerReader.h"
#include "platform/parser/PcapParser.h"
#include "platform/parser/StreamIndex.h"

#include <cstdint>
#include <vector>

namespace TavIec61850Parser {

// Decodes one frame record as far as needed and files it under its stream,
// counting what it was. `cooked` is scratch space for Linux cooked frames.
void fileFrame(const FrameRecord& rec, StreamIndex& index, FileStats& stats,
               std::vector<std::uint8_t>& cooked);

} // namespace TavIec61850Parser
