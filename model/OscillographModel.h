#pragma once

#include <cstdint>

namespace TavNA {

// The time range of everything opened, in seconds on the capture clock
// (seconds + nanoseconds / 1e9), and the largest gap a new file may have to
// it. The oscillograph writes the range, the capture model checks against it.
class OscillographModel {
public:
    double start = 0.0;
    double end = 0.0;
    double duration = 0.0; // end - start, never negative
    std::uint16_t gapSeconds = 60;
};

} // namespace TavNA
