#pragma once

#include "model/BasicChannel.h"

namespace TavNA {

class GooseChannel;

// A binary state has no phase, and its type changes nothing of how it is drawn.
struct GooseChannelTraits {
    using SourceType = TavRelay::BinaryChannelType;
    static constexpr Tav::Series::Kind serieKind = Tav::Series::Discrete;
    // Red 30, green 136, blue 229, opaque: one blue for every binary state.
    static constexpr std::optional<std::uint32_t> initialColor{0xFFE5881Eu};
};

extern template class BasicChannel<GooseChannel, GooseChannelTraits>;

// A binary channel of a GOOSE stream, drawn as a step curve in one fixed colour.
class GooseChannel final : public BasicChannel<GooseChannel, GooseChannelTraits> {};

} // namespace TavNA
