#include "stream/StreamClocks.h"

#include "job/EveryCore.h"
#include "platform/parser/EthernetDecoder.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/SvDecoder.h"
#include "stream/WindowFrames.h"

#include <algorithm>
#include <map>
#include <thread>

namespace TavStream {

using namespace TavIec61850Parser;

namespace {

constexpr std::int64_t kSecondNs = 1'000'000'000;
constexpr std::size_t kBatchFrames = 4096;

// The phase every other lies at or after, within half a second: the one of
// the fastest stream, even where phases straddle the turn of a second.
std::int64_t earliestPhase(const std::vector<std::int64_t>& phases) {
    for (const std::int64_t candidate : phases) {
        const bool first = std::all_of(phases.begin(), phases.end(), [&](std::int64_t p) {
            return ((p - candidate) % kSecondNs + kSecondNs) % kSecondNs < kSecondNs / 2;
        });
        if (first)
            return candidate;
    }
    return phases.front();
}

} // namespace

SamplingClock surveyStream(const Sv& stream, const std::atomic<bool>* cancel) {
    const WindowFrames all = framesInWindow(stream, std::nullopt, std::nullopt);
    std::vector<ClockFrame> frames;
    frames.reserve(all.frames.size());
    AsduCounters first;
    bool haveFirst = false;
    std::vector<SvAsduView> views;
    try {
        for (std::size_t begin = 0; begin < all.frames.size(); begin += kBatchFrames) {
            if (cancel != nullptr && cancel->load())
                break;
            const std::size_t end = std::min(all.frames.size(), begin + kBatchFrames);
            readFrames(
                all.frames, begin, end, [&](std::size_t i, const std::vector<std::uint8_t>& b) {
                    EthernetFrame eth;
                    if (!decodeEthernet(b.data(), b.size(), eth) || eth.etherType != kEtherTypeSv)
                        return;
                    try {
                        decodeSvApdu(eth.payload, eth.payloadSize, views);
                    } catch (const MalformedFrame&) {
                        return;
                    }
                    ClockFrame f{all.frames[i].ns, 0, 0, 0};
                    for (const auto& v : views) {
                        if (v.svId != stream.svId)
                            continue;
                        if (f.asdus++ == 0) {
                            f.smpCnt = v.counters.smpCnt;
                            f.smpSynch = v.counters.smpSynch;
                            if (!haveFirst)
                                first = v.counters;
                            haveFirst = true;
                        }
                    }
                    if (f.asdus > 0)
                        frames.push_back(f);
                });
        }
    } catch (const ParseError&) {
        // A file changed or gone since the parse: the frames read so far tell
        // the clock; reading the rest fails again where it is drawn, and says so.
    }
    return SamplingClock::survey(frames, first);
}

std::vector<const Sv*> svStreams(const Db& db) {
    std::vector<const Sv*> streams;
    for (const auto& sv : db.svProto.svs)
        streams.push_back(&sv);
    return streams;
}

namespace {

std::vector<SamplingClock> surveyEach(const std::vector<const Sv*>& streams,
                                      const std::atomic<bool>* cancel) {
    std::vector<SamplingClock> surveyed(streams.size());
    TavJob::forEachOnEveryCore(
        streams.size(), [&](std::size_t i) { surveyed[i] = surveyStream(*streams[i], cancel); });
    return surveyed;
}

} // namespace

void StreamClocks::surveyAll(const std::vector<const Sv*>& streams,
                             const std::atomic<bool>* cancel) {
    auto surveyed = surveyEach(streams, cancel);
    std::lock_guard<std::mutex> lock(mutex_);
    store(streams, surveyed);
}

void StreamClocks::store(const std::vector<const Sv*>& streams,
                         std::vector<SamplingClock>& surveyed) {
    for (std::size_t i = 0; i < streams.size(); ++i)
        clocks_[streams[i]] = std::move(surveyed[i]);
    alignSynchronised();
}

void StreamClocks::startSurvey() {
    joinSurvey();
    {
        std::lock_guard<std::mutex> lock(mutex_);
        surveying_ = true;
    }
    cancel_.store(false);
    survey_ = std::thread([this] {
        TavJob::lowerThreadPriority();
        auto surveyed = surveyEach(streams_, &cancel_);
        {
            std::lock_guard<std::mutex> lock(mutex_);
            if (!cancel_.load())
                store(streams_, surveyed);
            surveying_ = false;
        }
        surveyed_.notify_all();
    });
}

void StreamClocks::joinSurvey() {
    cancel_.store(true);
    if (survey_.joinable())
        survey_.join();
}

void StreamClocks::stop() {
    joinSurvey();
    std::lock_guard<std::mutex> lock(mutex_);
    // Its records may be gone once the database changes.
    if (clocks_.empty())
        streams_.clear();
}

bool StreamClocks::ready() {
    std::lock_guard<std::mutex> lock(mutex_);
    return !surveying_;
}

const SamplingClock& StreamClocks::of(const Sv& stream) {
    std::unique_lock<std::mutex> lock(mutex_);
    surveyed_.wait(lock, [this] { return !surveying_; });
    if (clocks_.empty() && !streams_.empty()) {
        auto surveyed = surveyEach(streams_, nullptr);
        store(streams_, surveyed);
    }
    auto found = clocks_.find(&stream);
    if (found == clocks_.end())
        found = clocks_.emplace(&stream, surveyStream(stream)).first;
    return found->second;
}

// Samples that two merging units took at one instant get one instant: each
// group of synchronised streams of one rate takes the phase of its fastest.
void StreamClocks::alignSynchronised() {
    std::map<double, std::vector<SamplingClock*>> groups;
    for (auto& [stream, clock] : clocks_)
        if (clock.synchronised() && !clock.byArrival())
            groups[clock.rateHz()].push_back(&clock);
    for (auto& [rate, clocks] : groups) {
        std::vector<std::int64_t> phases;
        for (const SamplingClock* clock : clocks)
            for (const std::int64_t phase : clock->secondPhasesNs())
                phases.push_back(phase);
        const std::int64_t phase = earliestPhase(phases);
        for (SamplingClock* clock : clocks)
            clock->alignTo(phase);
    }
}

} // namespace TavStream
