#pragma once

#include "comtrade/AsduClock.h"
#include "platform/parser/ByteReader.h"
#include "platform/parser/SvDecoder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace TavWaveform {

// Every ASDU of an SV stream's frames as one sample at its own instant: the
// last of a frame at the frame's capture time, the earlier ones back from it
// at the stream's sample interval. The ASDUs are views into the frame, not
// copies: a zoomed-out window reads millions of them.
class SvSampleReader {
public:
    SvSampleReader(double frameSpacingNs, std::uint32_t asdusPerFrame)
        : spacingNs_(frameSpacingNs), asdusPerFrame_(asdusPerFrame) {}

    // Calls use(ns, asdu) for each ASDU; false when the bytes are not an SV frame.
    template <typename Use>
    bool read(const std::vector<std::uint8_t>& bytes, std::int64_t frameNs, Use use) {
        if (!decode(bytes))
            return false;
        for (std::size_t a = 0; a < views_.size(); ++a)
            use(clock_->instant(frameNs, a, views_.size()), views_[a]);
        return true;
    }

    // The value of one channel; the caller checks the index against valueCount().
    static std::int32_t value(const TavIec61850Parser::SvAsduView& asdu, std::size_t index) {
        return static_cast<std::int32_t>(
            TavIec61850Parser::ByteReader::load32(asdu.seqData + 8 * index, true));
    }

private:
    bool decode(const std::vector<std::uint8_t>& bytes);

    double spacingNs_;
    std::uint32_t asdusPerFrame_;
    std::optional<TavComtrade::AsduClock> clock_;
    std::vector<TavIec61850Parser::SvAsduView> views_;
};

} // namespace TavWaveform
