#pragma once

#include "platform/parser/ByteReader.h"
#include "platform/parser/SvDecoder.h"
#include "stream/SamplingClock.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace TavStream {

// Every ASDU of an SV stream's own svID as one sample at its sampling instant,
// told by the stream's clock from the frame's arrival and the ASDU's counter.
// The ASDUs are views into the frame, not copies: a zoomed-out window reads
// millions of them.
class SvSampleReader {
public:
    SvSampleReader(const SamplingClock& clock, std::string svId)
        : clock_(clock), svId_(std::move(svId)) {}

    // Calls use(ns, asdu) for each ASDU; false when the bytes are not an SV frame.
    template <typename Use>
    bool read(const std::vector<std::uint8_t>& bytes, std::int64_t frameNs, Use use) {
        if (!decode(bytes))
            return false;
        for (std::size_t a = 0; a < views_.size(); ++a)
            use(clock_.instant(frameNs, views_[a].counters.smpCnt, a, views_.size()), views_[a]);
        return true;
    }

    // The value of one channel; the caller checks the index against valueCount().
    static std::int32_t value(const TavIec61850Parser::SvAsduView& asdu, std::size_t index) {
        return static_cast<std::int32_t>(
            TavIec61850Parser::ByteReader::load32(asdu.seqData + 8 * index, true));
    }

private:
    bool decode(const std::vector<std::uint8_t>& bytes);

    const SamplingClock& clock_;
    std::string svId_;
    std::vector<TavIec61850Parser::SvAsduView> views_;
};

} // namespace TavStream
