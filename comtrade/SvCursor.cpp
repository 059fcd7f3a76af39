#include "comtrade/SvCursor.h"

#include "platform/parser/SvParser.h"

#include <algorithm>
#include <cstdlib>

namespace TavComtrade {

using TavIec61850Parser::SvParser;

namespace {

constexpr std::size_t kBatchFrames = 512;
// How far back a copy from the other LAN is looked for: a few frames' worth.
constexpr std::size_t kRecentSamples = 16;
constexpr std::int64_t kCopyWindowNs = 500'000'000;

} // namespace

SvCursor::SvCursor(const TavIec61850Parser::Sv& stream,
                   const std::optional<TavIec61850Parser::Timest>& from,
                   const std::optional<TavIec61850Parser::Timest>& to,
                   std::vector<std::size_t> indices, const TavStream::SamplingClock& clock)
    : stream_(stream), window_(framesInWindow(stream, from, to)), indices_(std::move(indices)),
      clock_(clock) {}

bool SvCursor::next(SvSample& out) {
    while (true) {
        while (pending_.empty() && nextFrame_ < window_.frames.size())
            _readBatch();
        if (pending_.empty())
            return false;
        out = std::move(pending_.front());
        pending_.pop_front();
        // A publisher whose counter is stuck still sends new values: those stay.
        const bool copy = std::any_of(recent_.begin(), recent_.end(), [&](const SvSample& r) {
            return r.smpCnt == out.smpCnt && std::llabs(r.ns - out.ns) < kCopyWindowNs &&
                   r.values == out.values;
        });
        if (copy)
            continue;
        recent_.push_back(out);
        if (recent_.size() > kRecentSamples)
            recent_.pop_front();
        return true;
    }
}

void SvCursor::rewind() {
    nextFrame_ = 0;
    pending_.clear();
    recent_.clear();
}

void SvCursor::_readBatch() {
    const std::size_t end = std::min(window_.frames.size(), nextFrame_ + kBatchFrames);
    readFrames(window_.frames, nextFrame_, end,
               [&](std::size_t i, const std::vector<std::uint8_t>& bytes) {
                   auto asdus = SvParser::parseASDUFromFrame(bytes.data(), bytes.size());
                   // ASDUs of other data sets carried in the frame are not this stream's.
                   std::erase_if(asdus, [&](const auto& a) { return a.svId != stream_.svId; });
                   for (std::size_t a = 0; a < asdus.size(); ++a) {
                       SvSample sample;
                       sample.ns = clock_.instant(window_.frames[i].ns, asdus[a].counters.smpCnt, a,
                                                  asdus.size());
                       sample.smpCnt = asdus[a].counters.smpCnt;
                       sample.synchronised = asdus[a].counters.smpSynch != 0;
                       for (const std::size_t index : indices_)
                           sample.values.push_back(index < asdus[a].values.size()
                                                       ? asdus[a].values[index].value
                                                       : kMissing);
                       pending_.push_back(std::move(sample));
                   }
               });
    nextFrame_ = end;
}

} // namespace TavComtrade
