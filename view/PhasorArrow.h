#pragma once

#include <cstdint>
#include <string>

namespace TavNA {

// One arrow of the phasor diagram.
struct PhasorArrow {
    std::string label; // name and magnitude, "Ia 504.6 А"
    double magnitude = 0.0;
    double angleDeg = 0.0;
    std::uint32_t colour = 0; // 0xAABBGGRR, as the plot's curves
    bool voltage = false;
};

} // namespace TavNA
