#pragma once

#include <cstdint>

namespace TavCalculate {

// The phase a measured quantity belongs to; channel colours are keyed on it.
enum class Phase : std::int32_t { A = 0, B = 1, C = 2, N = 3 };

} // namespace TavCalculate

namespace TavRelay {

// What an analogue channel measures; it decides the raw unit's scale.
enum class AnalogChannelSourceType : std::int32_t { Current = 0, Voltage = 1 };

// What a discrete channel carries.
enum class BinaryChannelType : std::int32_t { Boolean = 0, BitString = 1 };

} // namespace TavRelay
