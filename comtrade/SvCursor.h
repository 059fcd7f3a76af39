#pragma once

#include "stream/SamplingClock.h"
#include "stream/WindowFrames.h"

#include <cstdint>
#include <deque>
#include <limits>
#include <optional>
#include <vector>

namespace TavComtrade {

using TavStream::framesInWindow;
using TavStream::PlacedFrame;
using TavStream::readFrames;
using TavStream::toNanoseconds;
using TavStream::WindowFrames;

// A value the ASDU does not hold.
inline constexpr std::int64_t kMissing = std::numeric_limits<std::int64_t>::min();

// One ASDU of a stream at its own instant, with the chosen values only.
struct SvSample {
    std::int64_t ns = 0;
    std::uint16_t smpCnt = 0;
    bool synchronised = false;
    std::vector<std::int64_t> values; // raw, or kMissing
};

// Walks every ASDU of one SV stream's own svID inside a window, in time order,
// each at its sampling instant, reading the frames again from their files a
// batch at a time.
class SvCursor {
public:
    SvCursor(const TavIec61850Parser::Sv& stream,
             const std::optional<TavIec61850Parser::Timest>& from,
             const std::optional<TavIec61850Parser::Timest>& to, std::vector<std::size_t> indices,
             const TavStream::SamplingClock& clock);

    const TavIec61850Parser::Sv& stream() const { return stream_; }
    bool empty() const { return window_.frames.empty(); }
    std::size_t frameCount() const { return window_.frames.size(); }
    std::size_t framesRead() const { return nextFrame_; }
    const TavStream::SamplingClock& clock() const { return clock_; }

    // The next sample; a copy of one just given (the same smpCnt and values
    // within half a second, as both LANs of a redundant network deliver it)
    // is skipped.
    bool next(SvSample& out);
    void rewind();

private:
    void _readBatch();

    const TavIec61850Parser::Sv& stream_;
    WindowFrames window_;
    std::vector<std::size_t> indices_;
    const TavStream::SamplingClock& clock_;
    std::size_t nextFrame_ = 0;
    std::deque<SvSample> pending_;
    std::deque<SvSample> recent_;
};

} // namespace TavComtrade
