#include "model/Converters.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iomanip>
#include <sstream>

namespace TavNA::Converters {

std::string intToHexString(int value) {
    if (value == 0)
        return "0x0";
    static constexpr char digits[] = "0123456789abcdef";
    auto bits = static_cast<std::uint32_t>(value);
    std::string reversed;
    while (bits != 0) {
        reversed += digits[bits & 0xFu];
        bits >>= 4;
    }
    std::reverse(reversed.begin(), reversed.end());
    return "0x" + reversed;
}

std::string formatNumberReadable(int value) {
    if (value == 0)
        return "0";
    static constexpr const char* suffixes[] = {"", "K", "M", "B", "T"};
    // Widening first keeps the most negative int's magnitude (2147483648) exact.
    const double x = std::fabs(static_cast<double>(value));
    const int e = static_cast<int>(std::floor(std::log10(x)));
    const int index = e > 14 ? 4 : e / 3;
    const int exponent = e > 14 ? 12 : 3 * index;
    const double mantissa = x / std::pow(10.0, exponent);

    std::ostringstream out;
    if (value < 0)
        out << '-';
    if (index == 0)
        out << static_cast<long long>(std::round(mantissa));
    else
        out << std::fixed << std::setprecision(mantissa < 10.0 ? 1 : 0) << mantissa;
    out << suffixes[index];
    return out.str();
}

} // namespace TavNA::Converters
