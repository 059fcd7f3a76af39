#pragma once

#include "tools/gen/CaptureWriter.h"

#include <cstdint>
#include <span>
#include <vector>

namespace TavGen {

// The frame as the link layer carries it: an Ethernet frame as it is, or the
// Linux cooked header that a capture on "any" interface writes in place of
// the addresses and EtherType (the source address kept, the destination
// lost), followed by the rest of the frame. `buffer` holds a rewritten frame.
std::span<const std::uint8_t> onLinkLayer(LinkLayer link, std::span<const std::uint8_t> ethernet,
                                          std::vector<std::uint8_t>& buffer);

// Compresses the file at `path` in place with gzip.
void gzipFile(const std::string& path);

} // namespace TavGen
