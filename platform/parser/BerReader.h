#pragma once

#include "platform/parser/ByteReader.h"

#include <cstddef>
#include <cstdint>

namespace TavIec61850Parser {

// One BER tag-length-value with its value still in the frame.
struct BerElement {
    std::uint8_t tag = 0;
    const std::uint8_t* value = nullptr;
    std::size_t length = 0;

    bool constructed() const { return (tag & 0x20) != 0; }
};

// Walks the elements of one BER value. Only the single-byte tags and definite
// lengths that SV and GOOSE use are accepted; anything else, or a length beyond
// the enclosing value, throws MalformedFrame.
class BerReader {
public:
    BerReader(const std::uint8_t* data, std::size_t size) : in_(data, size) {}
    explicit BerReader(const BerElement& e) : in_(e.value, e.length) {}

    bool atEnd() const { return in_.atEnd(); }
    BerElement next();
    // Reads the next element and insists on its tag.
    BerElement expect(std::uint8_t tag, const char* what);
    std::size_t position() const { return in_.position(); }

private:
    ByteReader in_;
};

// How deep constructed values may nest before a frame counts as malformed.
inline constexpr int kMaxBerDepth = 16;

// Checks that every constructed element inside [data, data+size) parses, down
// to kMaxBerDepth levels, and that no integer or unsigned of a data set is
// empty. Returns the number of top-level elements.
std::uint32_t validateBerSequence(const std::uint8_t* data, std::size_t size);

// Big-endian unsigned value of 1..8 bytes; throws MalformedFrame otherwise.
std::uint64_t berUnsigned(const BerElement& e, const char* what);
// Two's complement signed value of 1..8 bytes.
std::int64_t berSigned(const BerElement& e, const char* what);

} // namespace TavIec61850Parser
