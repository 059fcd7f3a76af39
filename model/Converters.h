#pragma once

#include <string>

namespace TavNA::Converters {

// Lower-case hexadecimal of the value's 32 bits, no padding: 255 -> "0xff", -1 -> "0xffffffff".
std::string intToHexString(int value);

// A compact count: 999 -> "999", 1500 -> "1.5K", 12345 -> "12K", 2000000000 -> "2.0B".
std::string formatNumberReadable(int value);

} // namespace TavNA::Converters
