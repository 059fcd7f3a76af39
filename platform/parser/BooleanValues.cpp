#include "platform/parser/BerReader.h"
#include "platform/parser/ByteReader.h"
#include "platform/parser/GooseParser.h"
#include "platform/parser/ParseError.h"

#include <bit>
#include <cmath>
#include <limits>

namespace TavIec61850Parser {

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

enum DataTag : std::uint8_t {
    kBoolean = 0x83,
    kBitString = 0x84,
    kInteger = 0x85,
    kUnsigned = 0x86,
    kFloat = 0x87,
};

// A bit-string read as the number its bits spell, first bit most significant.
float bitString(const BerElement& e) {
    if (e.length == 0 || e.length > 9 || e.value[0] > 7)
        return kNaN;
    if (e.length == 1)
        return 0;
    std::uint64_t v = 0;
    for (std::size_t i = 1; i < e.length; ++i)
        v = v << 8 | e.value[i];
    return static_cast<float>(v >> e.value[0]);
}

// Leading zero bytes of a 9-byte unsigned are padding; BER needs one before a
// value with its top bit set.
float unsignedValue(BerElement e) {
    while (e.length > 1 && e.value[0] == 0) {
        ++e.value;
        --e.length;
    }
    if (e.length == 0 || e.length > 8)
        return kNaN;
    return static_cast<float>(berUnsigned(e, "unsigned"));
}

// FloatingPoint: an exponent-width byte (8 or 11), then the IEEE value.
float floatingPoint(const BerElement& e) {
    if (e.length == 5 && e.value[0] == 8)
        return std::bit_cast<float>(ByteReader::load32(e.value + 1, true));
    if (e.length == 9 && e.value[0] == 11)
        return static_cast<float>(std::bit_cast<double>(ByteReader::load64(e.value + 1, true)));
    return kNaN;
}

float valueOf(const BerElement& e) {
    switch (e.tag) {
    case kBoolean:
        return e.length == 1 ? (e.value[0] != 0 ? 1.0f : 0.0f) : kNaN;
    case kBitString:
        return bitString(e);
    case kInteger:
        return e.length >= 1 && e.length <= 8 ? static_cast<float>(berSigned(e, "integer")) : kNaN;
    case kUnsigned:
        return unsignedValue(e);
    case kFloat:
        return floatingPoint(e);
    default:
        return kNaN;
    }
}

} // namespace

std::vector<float> GooseParser::parseBooleanValues(const std::vector<unsigned char>& data) {
    std::vector<float> values;
    BerReader r(data.data(), data.size());
    try {
        while (!r.atEnd())
            values.push_back(valueOf(r.next()));
    } catch (const MalformedFrame&) {
        // Bytes that stop parsing end the list; what came before still stands.
    }
    return values;
}

} // namespace TavIec61850Parser
