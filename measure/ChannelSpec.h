#pragma once

#include <cstddef>
#include <string>

namespace TavMeasure {

enum class Quantity { Current, Voltage };
enum class Phase { A, B, C, N };

// What the caller knows of one channel: where it lies in the ASDU, what it is
// called and measures, and how a raw value becomes amperes or volts, exactly
// as the window scales it.
struct ChannelSpec {
    std::size_t index = 0;
    std::string name;
    Quantity quantity = Quantity::Current;
    Phase phase = Phase::A;
    double scale = 1.0;

    const char* unit() const { return quantity == Quantity::Current ? "A" : "V"; }
};

} // namespace TavMeasure
