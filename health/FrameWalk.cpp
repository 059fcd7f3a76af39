#include "health/FrameWalk.h"

#include "platform/parser/ParseError.h"
#include "stream/WindowFrames.h"

#include <algorithm>

namespace TavHealth {

using namespace TavIec61850Parser;

std::uint64_t walkFrames(const PackageFiles& files,
                         const std::function<void(const Timest&, const EthernetFrame&)>& use,
                         const std::atomic<bool>* cancel) {
    // One time order over every file: LAN A and LAN B captured apart must
    // meet as they met on the wire, and a file's turn is no discontinuity.
    const TavStream::WindowFrames all =
        TavStream::framesOfFiles(files, std::nullopt, std::nullopt, TavStream::FrameOrder::Capture);
    constexpr std::size_t kBatch = 4096;
    std::uint64_t skipped = 0;
    for (std::size_t begin = 0; begin < all.frames.size(); begin += kBatch) {
        if (cancel && cancel->load())
            break;
        const std::size_t end = std::min(all.frames.size(), begin + kBatch);
        TavStream::readFrames(all.frames, begin, end,
                              [&](std::size_t i, const std::vector<std::uint8_t>& b) {
                                  EthernetFrame eth;
                                  if (!decodeEthernet(b.data(), b.size(), eth)) {
                                      ++skipped;
                                      return;
                                  }
                                  const std::int64_t ns = all.frames[i].ns;
                                  const Timest time{static_cast<std::uint32_t>(ns / 1'000'000'000),
                                                    static_cast<std::uint32_t>(ns % 1'000'000'000)};
                                  try {
                                      use(time, eth);
                                  } catch (const MalformedFrame&) {
                                      ++skipped;
                                  }
                              });
    }
    return skipped;
}

char lanOf(const EthernetFrame& eth) {
    if (eth.hasPrp)
        return eth.prpLan == 0xB ? 'B' : 'A';
    if (eth.hasHsr)
        return (eth.hsrPath & 1) ? 'B' : 'A';
    return 0;
}

} // namespace TavHealth
