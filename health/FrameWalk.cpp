#include "health/FrameWalk.h"

#include "platform/parser/FrameReader.h"
#include "platform/parser/ParseError.h"

#include <algorithm>

namespace TavHealth {

using namespace TavIec61850Parser;

std::uint64_t walkFrames(const PackageFiles& files,
                         const std::function<void(const Timest&, const EthernetFrame&)>& use,
                         const std::atomic<bool>* cancel) {
    std::vector<const PackageFile*> ordered;
    for (const auto& f : files)
        ordered.push_back(&f);
    std::sort(ordered.begin(), ordered.end(), [](const PackageFile* a, const PackageFile* b) {
        return std::pair(a->getBeginTime(), a->path) < std::pair(b->getBeginTime(), b->path);
    });
    std::uint64_t skipped = 0;
    std::vector<std::uint64_t> offsets;
    for (const PackageFile* file : ordered) {
        if (cancel && cancel->load())
            break;
        offsets.clear();
        for (const auto& p : file->packages)
            offsets.push_back(p.offset);
        FrameReader::readEach(file->path, offsets,
                              [&](std::size_t i, std::vector<std::uint8_t>& b) {
                                  if (cancel && cancel->load())
                                      return;
                                  EthernetFrame eth;
                                  if (!decodeEthernet(b.data(), b.size(), eth)) {
                                      ++skipped;
                                      return;
                                  }
                                  try {
                                      use(file->packages[i].time, eth);
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
