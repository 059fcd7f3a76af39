#pragma once

#include "model/ChannelTypes.h"

#include <cstddef>
#include <string>

namespace TavNA {

// What a stream's channel is called and measures, from its place among the
// stream's `count` values: three values are Ia Ib Ic; multiples of four run
// Ia Ib Ic In Ua Ub Uc Un and repeat, the first of each later block of eight
// numbered; any other count leaves every channel "Ia".
struct SvChannelLabel {
    std::string name;
    std::string description; // the name and " | <svID>", as lists and exports show it
    TavRelay::AnalogChannelSourceType source = TavRelay::AnalogChannelSourceType::Current;
    TavCalculate::Phase phase = TavCalculate::Phase::A;
};

SvChannelLabel svChannelLabel(std::size_t index, std::size_t count, const std::string& svId);

} // namespace TavNA
