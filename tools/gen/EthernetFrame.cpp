#include "tools/gen/EthernetFrame.h"

namespace TavGen {

namespace {
constexpr std::uint16_t kVlan = 0x8100;
constexpr std::uint16_t kHsr = 0x892F;
constexpr std::uint16_t kPrpSuffix = 0x88FB;
constexpr std::uint8_t kVlanPriority = 4; // the usual priority of protection traffic

void push16(std::vector<std::uint8_t>& out, std::uint16_t v) {
    out.push_back(static_cast<std::uint8_t>(v >> 8));
    out.push_back(static_cast<std::uint8_t>(v));
}

// Path 0 carries line A, path 1 line B; the LAN identifier of PRP is 0xA or 0xB.
std::uint16_t lineField(char line, bool prp, std::size_t lsduSize) {
    const std::uint16_t id = prp ? (line == 'B' ? 0xB : 0xA) : (line == 'B' ? 1 : 0);
    return static_cast<std::uint16_t>((id << 12) | (lsduSize & 0x0FFF));
}
} // namespace

FrameLayout buildEthernetFrame(std::vector<std::uint8_t>& out, const Mac& dst, const Mac& src,
                               const Tagging& tagging, std::uint16_t etherType,
                               std::span<const std::uint8_t> payload, std::uint16_t sequence) {
    FrameLayout layout;
    out.clear();
    out.insert(out.end(), dst.begin(), dst.end());
    out.insert(out.end(), src.begin(), src.end());
    if (tagging.vlanId) {
        push16(out, kVlan);
        const std::uint16_t dei = tagging.dropEligible ? 0x1000 : 0;
        push16(out, static_cast<std::uint16_t>((kVlanPriority << 13) | dei |
                                               (*tagging.vlanId & 0x0FFF)));
    }
    if (tagging.hsrLine) {
        push16(out, kHsr);
        push16(out, lineField(*tagging.hsrLine, false, payload.size() + 6));
        layout.hsrSequenceOffset = out.size();
        push16(out, sequence);
    }
    push16(out, etherType);
    layout.payloadOffset = out.size();
    out.insert(out.end(), payload.begin(), payload.end());
    if (tagging.prpLine) {
        layout.prpSequenceOffset = out.size();
        push16(out, sequence);
        push16(out, lineField(*tagging.prpLine, true, payload.size() + 6));
        push16(out, kPrpSuffix);
    }
    return layout;
}

void setRedundancySequence(std::span<std::uint8_t> frame, const FrameLayout& layout,
                           std::uint16_t sequence) {
    if (layout.hsrSequenceOffset)
        putBigEndian16(frame.data() + *layout.hsrSequenceOffset, sequence);
    if (layout.prpSequenceOffset)
        putBigEndian16(frame.data() + *layout.prpSequenceOffset, sequence);
}

} // namespace TavGen
