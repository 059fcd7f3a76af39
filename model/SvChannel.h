#pragma once

#include "model/BasicChannel.h"

namespace TavNA {

struct SvChannelTraits {
    using SourceType = TavRelay::AnalogChannelSourceType;
    static constexpr Tav::Series::Kind serieKind = Tav::Series::Analog;
    // The colour comes with the phase, which every creator sets.
    static constexpr std::optional<std::uint32_t> initialColor{};

    static void applySourceType(SourceType type, Tav::Series& serie);
    static void applyPhase(TavCalculate::Phase phase, Tav::Series& serie);
};

class SvChannel;
extern template class BasicChannel<SvChannel, SvChannelTraits>;

// An analogue channel of an SV stream, drawn as a scaled sample curve.
class SvChannel final : public BasicChannel<SvChannel, SvChannelTraits> {};

} // namespace TavNA
