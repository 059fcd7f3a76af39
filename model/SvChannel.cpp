#include "model/SvChannel.h"

#include <array>

namespace TavNA {

template class BasicChannel<SvChannel, SvChannelTraits>;

void SvChannelTraits::applySourceType(SourceType type, Tav::Series& serie) {
    // The ratio is the value of one raw unit: 1 mA for currents, 10 mV for
    // voltages. Each unit gets a value axis of its own, so neither is
    // stretched to be seen beside the other.
    switch (type) {
    case SourceType::Current:
        serie.gain = 1.0f;
        serie.transformRatio = 0.001f;
        serie.unit = "А";
        break;
    case SourceType::Voltage:
        serie.gain = 1.0f;
        serie.transformRatio = 0.01f;
        serie.unit = "В";
        break;
    default:
        break;
    }
}

void SvChannelTraits::applyPhase(TavCalculate::Phase phase, Tav::Series& serie) {
    // Yellow, green, red, grey-blue. An unknown phase keeps whatever colour the
    // curve had: no other colour could not be mistaken for one of the four.
    static constexpr std::array<std::uint32_t, 4> colours{0xFF00EAFFu, 0xFF47A043u, 0xFF3539E5u,
                                                          0xFF8B7D60u};
    const auto index = static_cast<std::int32_t>(phase);
    if (index >= 0 && index < static_cast<std::int32_t>(colours.size()))
        serie.color = colours[static_cast<std::size_t>(index)];
}

} // namespace TavNA
