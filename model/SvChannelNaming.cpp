#include "model/SvChannelNaming.h"

#include <array>

namespace TavNA {

SvChannelLabel svChannelLabel(std::size_t i, std::size_t count, const std::string& svId) {
    using Source = TavRelay::AnalogChannelSourceType;
    using Phase = TavCalculate::Phase;
    static const std::array<const char*, 8> names{"Ia", "Ib", "Ic", "In", "Ua", "Ub", "Uc", "Un"};
    const std::string suffix = " | " + svId;
    SvChannelLabel label;
    label.name = "Ia";
    bool numbered = false;
    if (count == 3) {
        label.name = names[i];
        label.phase = static_cast<Phase>(i);
    } else if (count % 4 == 0) {
        // Past the eighth value the current/voltage pattern repeats.
        label.source = static_cast<Source>((i / 4) % 2);
        label.phase = static_cast<Phase>(i % 4);
        label.name = names[i % 8];
        // The first channel of each later block carries the block number and
        // the svID in its name too; the check box shows it that way.
        numbered = i > 7 && i % 8 == 0;
        if (numbered)
            label.name += std::to_string(i / 8) + suffix;
    }
    label.description = numbered ? label.name : label.name + suffix;
    return label;
}

} // namespace TavNA
