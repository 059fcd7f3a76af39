#pragma once

#include "platform/parser/EthernetDecoder.h"
#include "platform/parser/PackageFile.h"

#include <atomic>
#include <cstdint>
#include <functional>

namespace TavHealth {

// The frames of one stream across all its files: each file in the order it
// was captured, the files merged by the time of their next frame. `use` may throw MalformedFrame;
// such frames, and frames whose Ethernet header does not decode, are skipped and counted in the
// result. Stops early once `cancel` is set. A file that cannot be read throws ParseError.
std::uint64_t walkFrames(const TavIec61850Parser::PackageFiles& files,
                         const std::function<void(const TavIec61850Parser::Timest&,
                                                  const TavIec61850Parser::EthernetFrame&)>& use,
                         const std::atomic<bool>* cancel);

// 'A' or 'B' for a frame sent on one of two redundant LANs, else 0.
char lanOf(const TavIec61850Parser::EthernetFrame& eth);

} // namespace TavHealth
