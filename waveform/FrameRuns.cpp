#include "waveform/FrameRuns.h"

#include "platform/parser/ParseError.h"

#include <exception>

namespace TavWaveform {

void readFrameRuns(const std::vector<TavStream::PlacedFrame>& frames, ReadFailures& failures,
                   const std::function<void(std::size_t, const std::vector<std::uint8_t>&)>& use) {
    std::size_t begin = 0;
    while (begin < frames.size()) {
        std::size_t end = begin;
        while (end < frames.size() && frames[end].path == frames[begin].path)
            ++end;
        try {
            TavStream::readFrames(frames, begin, end, use);
        } catch (const std::exception& error) {
            const auto* parseError = dynamic_cast<const TavIec61850Parser::ParseError*>(&error);
            failures.emplace(*frames[begin].path,
                             parseError != nullptr ? parseError->reason() : error.what());
        }
        begin = end;
    }
}

} // namespace TavWaveform
