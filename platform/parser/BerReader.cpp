#include "platform/parser/BerReader.h"

#include "platform/parser/ParseError.h"

#include <string>

namespace TavIec61850Parser {

namespace {

// The data-set tags of integer and unsigned: X.690 gives an integer at least
// one content octet, so an empty one is a broken encoding, not a zero.
constexpr std::uint8_t kDataInteger = 0x85;
constexpr std::uint8_t kDataUnsigned = 0x86;

[[noreturn]] void malformed(const std::string& why) {
    throw MalformedFrame(why);
}

std::uint32_t validateLevel(const std::uint8_t* data, std::size_t size, int depth) {
    if (depth > kMaxBerDepth)
        malformed("BER nesting deeper than " + std::to_string(kMaxBerDepth));
    BerReader r(data, size);
    std::uint32_t count = 0;
    while (!r.atEnd()) {
        BerElement e = r.next();
        if (e.constructed())
            validateLevel(e.value, e.length, depth + 1);
        else if (e.length == 0 && (e.tag == kDataInteger || e.tag == kDataUnsigned))
            malformed("integer with no content octets");
        ++count;
    }
    return count;
}

} // namespace

BerElement BerReader::next() {
    if (in_.remaining() < 2)
        malformed("BER element cut short");
    BerElement e;
    e.tag = in_.u8();
    if ((e.tag & 0x1F) == 0x1F)
        malformed("multi-byte BER tag");
    std::uint8_t first = in_.u8();
    std::size_t length = first;
    if (first & 0x80) {
        std::size_t octets = first & 0x7F;
        if (octets == 0 || octets > 4)
            malformed("unsupported BER length form");
        if (in_.remaining() < octets)
            malformed("BER length cut short");
        length = 0;
        for (std::size_t i = 0; i < octets; ++i)
            length = (length << 8) | in_.u8();
    }
    if (length > in_.remaining())
        malformed("BER length beyond its enclosing value");
    e.length = length;
    e.value = in_.bytes(length);
    return e;
}

BerElement BerReader::expect(std::uint8_t tag, const char* what) {
    if (atEnd())
        malformed(std::string("missing ") + what);
    BerElement e = next();
    if (e.tag != tag)
        malformed(std::string("expected ") + what);
    return e;
}

std::uint32_t validateBerSequence(const std::uint8_t* data, std::size_t size) {
    return validateLevel(data, size, 1);
}

std::uint64_t berUnsigned(const BerElement& e, const char* what) {
    if (e.length == 0 || e.length > 8)
        malformed(std::string("bad length of ") + what);
    std::uint64_t v = 0;
    for (std::size_t i = 0; i < e.length; ++i)
        v = (v << 8) | e.value[i];
    return v;
}

std::int64_t berSigned(const BerElement& e, const char* what) {
    std::uint64_t v = berUnsigned(e, what);
    if (e.length < 8 && (e.value[0] & 0x80))
        v |= ~std::uint64_t{0} << (8 * e.length);
    return static_cast<std::int64_t>(v);
}

} // namespace TavIec61850Parser
