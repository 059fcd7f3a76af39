#include "tools/gen/GooseStream.h"

#include "tools/gen/BerWriter.h"

#include <algorithm>

namespace TavGen {

namespace {
constexpr std::uint16_t kGooseEtherType = 0x88B8;
constexpr std::uint16_t kSimulationBit = 0x8000;
constexpr std::uint64_t kFirstIntervalNs = 2'000'000;
constexpr std::uint64_t kMaxIntervalNs = 1'000'000'000;
constexpr std::uint8_t kTimeQuality = 0x0A; // clock synchronised, 10 bits of accuracy

// UtcTime: seconds, then the fraction of a second in 24 bits, then the quality.
std::array<std::uint8_t, 8> utcTime(std::uint64_t ns) {
    const auto seconds = static_cast<std::uint32_t>(ns / 1'000'000'000u);
    const auto fraction =
        static_cast<std::uint32_t>((ns % 1'000'000'000u) * (1u << 24) / 1'000'000'000u);
    std::array<std::uint8_t, 8> t{};
    putBigEndian32(t.data(), seconds);
    t[4] = static_cast<std::uint8_t>(fraction >> 16);
    t[5] = static_cast<std::uint8_t>(fraction >> 8);
    t[6] = static_cast<std::uint8_t>(fraction);
    t[7] = kTimeQuality;
    return t;
}
} // namespace

GooseStream::GooseStream(const GooseStreamConfig& config, std::uint64_t startNs,
                         std::uint64_t durationNs)
    : config_(config), startNs_(startNs), durationNs_(durationNs), intervalNs_(kFirstIntervalNs),
      state_(&config_.initial) {}

void GooseStream::advance() {
    const std::uint64_t retransmitAt = offsetNs_ + intervalNs_;
    if (nextChange_ < config_.changes.size() && config_.changes[nextChange_].atNs <= retransmitAt) {
        const GooseChange& change = config_.changes[nextChange_++];
        offsetNs_ = std::max(change.atNs, offsetNs_);
        changedAtNs_ = offsetNs_;
        state_ = &change.values;
        ++stNum_;
        sqNum_ = 0;
        intervalNs_ = kFirstIntervalNs;
    } else {
        offsetNs_ = retransmitAt;
        ++sqNum_;
        intervalNs_ = std::min(intervalNs_ * 2, kMaxIntervalNs);
    }
    for (std::size_t i = 0, seen = 0; i < config_.faults.size(); ++i) {
        const Fault& f = config_.faults[i];
        if (f.kind != FaultKind::StNumBack || seen++ < stNumFallen_ || offsetNs_ < f.atNs)
            continue;
        ++stNumFallen_;
        --stNum_;
    }
    ++sequence_;
}

std::span<const std::uint8_t> GooseStream::frame() {
    apdu_.assign(8, 0);
    BerWriter ber(apdu_);
    const auto pdu = ber.open(0x61);
    ber.putString(0x80, config_.gocbRef);
    ber.putInteger(0x81, config_.timeAllowedToLiveMs);
    ber.putString(0x82, config_.datSet);
    ber.putString(0x83, config_.goId);
    ber.putBytes(0x84, utcTime(startNs_ + changedAtNs_));
    ber.putInteger(0x85, stNum_);
    ber.putInteger(0x86, sqNum_);
    ber.putBool(0x87, config_.simulation);
    ber.putInteger(0x88, config_.confRev);
    ber.putBool(0x89, false);
    ber.putInteger(
        0x8A, config_.declaredEntries.value_or(static_cast<std::uint32_t>(config_.entries.size())));
    const auto allData = ber.open(0xAB);
    for (std::size_t i = 0; i < config_.entries.size(); ++i) {
        const std::uint8_t v = i < state_->size() ? (*state_)[i] : 0;
        if (config_.entries[i] == GooseEntry::Boolean) {
            ber.putBool(0x83, v != 0);
        } else {
            // Two bits used of one octet: six unused bits, the value in the top two.
            const std::uint8_t bits[2] = {6, static_cast<std::uint8_t>((v & 3) << 6)};
            ber.putBytes(0x84, bits);
        }
    }
    if (config_.emptyInteger)
        ber.putBytes(0x85, {});
    ber.close(allData);
    ber.close(pdu);
    putBigEndian16(apdu_.data(), config_.appId);
    putBigEndian16(apdu_.data() + 2, static_cast<std::uint16_t>(apdu_.size()));
    putBigEndian16(apdu_.data() + 4, config_.simulation ? kSimulationBit : 0);
    buildEthernetFrame(frame_, config_.dst, config_.src, config_.tagging, kGooseEtherType, apdu_,
                       sequence_);
    return frame_;
}

} // namespace TavGen
