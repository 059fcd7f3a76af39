#include "waveform/SampleSummary.h"

#include "platform/parser/FileRegistry.h"
#include "platform/parser/FrameReader.h"
#include "stream/WindowFrames.h"
#include "stream/SvSampleReader.h"
#include "waveform/SvTrace.h"

#include <algorithm>
#include <exception>
#include <limits>

namespace TavWaveform {

namespace {

// Frames read back in one go between looks at the stop flag.
constexpr std::size_t kBatchFrames = 65536;

} // namespace

std::optional<SummarySource> SummarySource::of(const TavIec61850Parser::Sv& stream,
                                               const TavStream::SamplingClock& clock) {
    if (stream.files.size() != 1 || !stream.files.begin()->timeOrdered)
        return std::nullopt;
    const auto& file = *stream.files.begin();
    SummarySource source;
    source.path = file.path;
    source.packages = file.packages;
    source.svId = stream.svId;
    source.clock = clock;
    source.channels = stream.valuesPerAsdu;
    return source;
}

namespace {

std::string keyFor(const std::string& path, const std::vector<TavIec61850Parser::Package>& packages,
                   std::size_t channels) {
    const auto offset = [&](bool last) {
        return packages.empty() ? 0 : (last ? packages.back() : packages.front()).offset;
    };
    // The file as it was parsed: a capture written again under the same name
    // with the same layout must not be drawn from the old one's summary.
    const auto version =
        TavIec61850Parser::FileRegistry::lookup(path).value_or(TavIec61850Parser::FileVersion{});
    return path + '\n' + std::to_string(version.size) + '\n' + std::to_string(version.mtimeNs) +
           '\n' + std::to_string(packages.size()) + '\n' + std::to_string(offset(false)) + '\n' +
           std::to_string(offset(true)) + '\n' + std::to_string(channels);
}

} // namespace

std::string SummarySource::key() const {
    return keyFor(path, packages, channels);
}

std::string SummarySource::keyOf(const TavIec61850Parser::Sv& stream) {
    if (stream.files.size() != 1 || !stream.files.begin()->timeOrdered)
        return {};
    const auto& file = *stream.files.begin();
    return keyFor(file.path, file.packages, stream.valuesPerAsdu);
}

std::size_t SampleSummary::blockFramesFor(std::size_t channels) {
    const std::size_t perBlock = sizeof(Block) + 2 * sizeof(std::int32_t) * channels;
    std::size_t frames = 64;
    while (perBlock > kMaxBytesPerFrame * frames)
        frames *= 2;
    return frames;
}

std::optional<SampleSummary> SampleSummary::build(const SummarySource& source,
                                                  const std::atomic<bool>& stop) {
    SampleSummary s;
    s.channels_ = source.channels;
    s.blockFrames_ = blockFramesFor(source.channels);
    const std::size_t blocks = (source.packages.size() + s.blockFrames_ - 1) / s.blockFrames_;
    s.blocks_.resize(blocks);
    s.minMax_.resize(blocks * s.channels_ * 2);
    for (std::size_t i = 0; i < s.minMax_.size(); i += 2) {
        s.minMax_[i] = std::numeric_limits<std::int32_t>::max();
        s.minMax_[i + 1] = std::numeric_limits<std::int32_t>::min();
    }
    TavStream::SvSampleReader samples(source.clock, source.svId);
    std::vector<std::uint64_t> offsets;
    for (std::size_t begin = 0; begin < source.packages.size(); begin += kBatchFrames) {
        if (stop.load())
            return std::nullopt;
        const std::size_t end = std::min(source.packages.size(), begin + kBatchFrames);
        offsets.clear();
        for (std::size_t i = begin; i < end; ++i)
            offsets.push_back(source.packages[i].offset);
        try {
            TavIec61850Parser::FrameReader::readEach(
                source.path, offsets, [&](std::size_t k, std::vector<std::uint8_t>& bytes) {
                    const std::size_t frame = begin + k;
                    const std::size_t b = frame / s.blockFrames_;
                    Block& block = s.blocks_[b];
                    const auto ns = TavStream::toNanoseconds(source.packages[frame].time);
                    samples.read(bytes, ns,
                                 [&](std::int64_t at, const TavIec61850Parser::SvAsduView& asdu) {
                                     if (block.lastNs == 0)
                                         block.firstNs = at;
                                     block.lastNs = at;
                                     const std::size_t n = std::min(s.channels_, asdu.valueCount());
                                     std::int32_t* mm = &s.minMax_[b * s.channels_ * 2];
                                     for (std::size_t c = 0; c < n; ++c) {
                                         const std::int32_t v = TavStream::SvSampleReader::value(asdu, c);
                                         mm[2 * c] = std::min(mm[2 * c], v);
                                         mm[2 * c + 1] = std::max(mm[2 * c + 1], v);
                                     }
                                 });
                });
        } catch (const std::exception&) {
            return std::nullopt; // drawn from the frames themselves, as without a summary
        }
    }
    return s;
}

bool SampleSummary::range(std::size_t b, std::size_t channel, std::int32_t& lo,
                          std::int32_t& hi) const {
    if (b >= blocks_.size() || channel >= channels_)
        return false;
    lo = minMax_[(b * channels_ + channel) * 2];
    hi = minMax_[(b * channels_ + channel) * 2 + 1];
    return lo <= hi;
}

std::size_t SampleSummary::bytes() const {
    return blocks_.size() * sizeof(Block) + minMax_.size() * sizeof(std::int32_t);
}

} // namespace TavWaveform
