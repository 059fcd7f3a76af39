#include "tools/gen/SvStream.h"

#include "tools/gen/BerWriter.h"

namespace TavGen {

namespace {
constexpr std::uint16_t kSvEtherType = 0x88BA;
constexpr std::uint16_t kSimulationBit = 0x8000;
constexpr std::size_t kApduHeader = 8; // APPID, length, reserved 1 and 2

SvStreamConfig withWholeEntries(SvStreamConfig config) {
    if (config.seqDataBytes)
        config.channels = *config.seqDataBytes / 8;
    return config;
}

} // namespace

std::string asduSvId(const SvStreamConfig& config, std::uint32_t index) {
    if (!config.distinctSvIds || index == 0)
        return config.svId;
    return config.svId + "/" + std::to_string(index);
}

SvStream::SvStream(const SvStreamConfig& config, std::uint64_t startNs, std::uint64_t durationNs)
    : config_(withWholeEntries(config)), startNs_(startNs + config.startOffsetNs),
      durationNs_(durationNs > config.startOffsetNs ? durationNs - config.startOffsetNs : 0),
      values_(config_.channels), qualityFrames_(config.faults.size(), 0) {
    buildTemplate();
}

void SvStream::buildTemplate() {
    std::vector<std::uint8_t> apdu(kApduHeader, 0);
    BerWriter ber(apdu);
    slots_.clear();
    // Closing an element may widen its length field, which moves every slot
    // recorded inside it by the same amount.
    auto close = [&](std::size_t handle) {
        const std::size_t before = ber.size();
        ber.close(handle);
        const std::size_t widened = ber.size() - before;
        for (auto& s : slots_) {
            if (s.smpCnt >= handle) {
                s.smpCnt += widened;
                s.seqData += widened;
                s.smpSynch += widened;
            }
        }
    };
    const auto savPdu = ber.open(0x60);
    ber.putInteger(0x80, config_.asdus);
    const auto seqAsdu = ber.open(0xA2);
    std::vector<std::uint8_t> zeros(config_.seqDataBytes.value_or(8 * config_.channels), 0);
    for (std::size_t i = 8 * config_.channels; i < zeros.size(); ++i)
        zeros[i] = restByte(i - 8 * config_.channels);
    for (std::uint32_t a = 0; a < config_.asdus; ++a) {
        const auto asdu = ber.open(0x30);
        ber.putString(0x80, asduSvId(config_, a));
        if (!config_.datSet.empty())
            ber.putString(0x81, config_.datSet);
        ber.putFixed(0x82, 0, 2);
        AsduSlots slot;
        slot.smpCnt = ber.size() - 2;
        ber.putFixed(0x83, config_.confRev, 4);
        ber.putFixed(0x85, config_.smpSynch, 1);
        slot.smpSynch = ber.size() - 1;
        ber.putFixed(0x86, config_.rate, 2);
        ber.putBytes(0x87, zeros);
        slot.seqData = ber.size() - zeros.size();
        slots_.push_back(slot);
        close(asdu);
    }
    close(seqAsdu);
    close(savPdu);

    putBigEndian16(apdu.data(), config_.appId);
    putBigEndian16(apdu.data() + 2, static_cast<std::uint16_t>(apdu.size()));
    putBigEndian16(apdu.data() + 4, config_.simulation ? kSimulationBit : 0);
    layout_ = buildEthernetFrame(frame_, config_.dst, config_.src, config_.tagging, kSvEtherType,
                                 apdu, 0);
}

std::uint64_t SvStream::samplesPerFrame() const {
    return config_.distinctSvIds ? 1 : config_.asdus;
}

bool SvStream::done() const {
    // Frame k starts with sample k * asdus at k * asdus / rate seconds; the
    // comparison stays in integers so that no frame slips in or out by rounding.
    const std::uint64_t firstSample = frameIndex_ * samplesPerFrame();
    return firstSample * 1'000'000'000u >= durationNs_ * config_.rate;
}

std::uint64_t SvStream::timeNs() const {
    const std::uint64_t firstSample = frameIndex_ * samplesPerFrame();
    return startNs_ + firstSample * 1'000'000'000u / config_.rate;
}

std::span<const std::uint8_t> SvStream::frame() {
    std::uint8_t* apdu = frame_.data() + layout_.payloadOffset;
    for (std::uint32_t a = 0; a < config_.asdus; ++a) {
        const std::uint64_t n = frameIndex_ * samplesPerFrame() + (config_.distinctSvIds ? 0 : a);
        putBigEndian16(apdu + slots_[a].smpCnt, static_cast<std::uint16_t>(n % config_.rate));
        config_.signal.sample(n, config_.rate, values_);
        // Another publisher's data set carries other values: a reader that
        // takes its ASDUs for the stream's own gets them visibly wrong.
        const std::int32_t foreign = config_.distinctSvIds ? static_cast<std::int32_t>(a) + 1 : 1;
        std::uint8_t* seqData = apdu + slots_[a].seqData;
        for (std::uint32_t c = 0; c < config_.channels; ++c)
            putBigEndian32(seqData + 8 * c, static_cast<std::uint32_t>(values_[c] * foreign));
    }
    applyFaults(apdu);
    setRedundancySequence(frame_, layout_, static_cast<std::uint16_t>(frameIndex_));
    return frame_;
}

void SvStream::applyFaults(std::uint8_t* apdu) {
    const std::uint64_t now = timeNs() - startNs_;
    std::uint8_t synch = config_.smpSynch;
    std::uint32_t quality = 0;
    for (std::size_t i = 0; i < config_.faults.size(); ++i) {
        const Fault& f = config_.faults[i];
        if (now < f.atNs)
            continue;
        if (f.kind == FaultKind::Synch)
            synch = static_cast<std::uint8_t>(f.value);
        if (f.kind == FaultKind::Quality && qualityFrames_[i] < f.count) {
            ++qualityFrames_[i];
            quality = static_cast<std::uint32_t>(f.value);
        }
    }
    for (std::uint32_t a = 0; a < config_.asdus; ++a) {
        apdu[slots_[a].smpSynch] = synch;
        if (config_.channels > 0)
            putBigEndian32(apdu + slots_[a].seqData + 4, quality);
    }
}

} // namespace TavGen
