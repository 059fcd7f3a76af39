#include "waveform/FrameRuns.h"

#include <exception>

namespace TavWaveform {

void readFrameRuns(const std::vector<TavComtrade::PlacedFrame>& frames,
                   std::optional<std::string>& failure,
                   const std::function<void(std::size_t, const std::vector<std::uint8_t>&)>& use) {
    std::size_t begin = 0;
    while (begin < frames.size()) {
        std::size_t end = begin;
        while (end < frames.size() && frames[end].path == frames[begin].path)
            ++end;
        try {
            TavComtrade::readFrames(frames, begin, end, use);
        } catch (const std::exception& error) {
            if (!failure)
                failure = error.what();
        }
        begin = end;
    }
}

} // namespace TavWaveform
