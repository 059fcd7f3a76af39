#pragma once

#include "platform/parser/StreamRecords.h"
#include "stream/SamplingClock.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TavWaveform {

// The frames of one SV stream that lies in one time-ordered file, copied out
// of the database so that a worker can read them while the database changes.
struct SummarySource {
    std::string path;
    std::vector<TavIec61850Parser::Package> packages;
    std::string svId;
    TavStream::SamplingClock clock;
    std::size_t channels = 0; // values per ASDU

    // Empty when the stream lies in several files or its times go backwards.
    static std::optional<SummarySource> of(const TavIec61850Parser::Sv& stream,
                                           const TavStream::SamplingClock& clock);
    // What the summary was built from: it serves the stream only while equal.
    std::string key() const;
    // The key the stream's source would have, without copying its frames;
    // empty when it has no source.
    static std::string keyOf(const TavIec61850Parser::Sv& stream);
};

// The lowest and highest value of every channel over each block of
// consecutive frames of a stream: a window far wider than the plot is drawn
// from it instead of from every frame. Blocks are long enough that the
// summary costs at most two bytes a frame.
class SampleSummary {
public:
    struct Block {
        std::int64_t firstNs = 0; // instants of the block's first and last samples
        std::int64_t lastNs = 0;
    };

    static constexpr std::size_t kMaxBytesPerFrame = 2;

    // Reads every frame of the source once; empty when `stop` is raised or a
    // frame cannot be read.
    static std::optional<SampleSummary> build(const SummarySource& source,
                                              const std::atomic<bool>& stop);

    static std::size_t blockFramesFor(std::size_t channels);
    std::size_t blockFrames() const { return blockFrames_; }
    std::size_t blockCount() const { return blocks_.size(); }
    const Block& block(std::size_t b) const { return blocks_[b]; }
    // The block's lowest and highest value of a channel; false when none of
    // its ASDUs holds that channel.
    bool range(std::size_t b, std::size_t channel, std::int32_t& lo, std::int32_t& hi) const;
    std::size_t bytes() const;

private:
    std::size_t blockFrames_ = 0;
    std::size_t channels_ = 0;
    std::vector<Block> blocks_;
    std::vector<std::int32_t> minMax_; // per block, per channel: min then max
};

} // namespace TavWaveform
