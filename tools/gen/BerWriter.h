#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace TavGen {

// Appends BER tag-length-value elements to a byte vector. A constructed element
// is opened, filled and closed; its length is written on close, widening to
// the long form when the contents outgrow 127 bytes.
class BerWriter {
public:
    explicit BerWriter(std::vector<std::uint8_t>& out) : out_(out) {}

    // Returns the handle that close() takes.
    std::size_t open(std::uint8_t tag);
    void close(std::size_t handle);

    void putBytes(std::uint8_t tag, std::span<const std::uint8_t> bytes);
    void putString(std::uint8_t tag, std::string_view text);
    void putBool(std::uint8_t tag, bool value);
    // Shortest two's-complement form, as GOOSE publishers send integers.
    void putInteger(std::uint8_t tag, std::int64_t value);
    // Exactly `width` big-endian bytes, as the SV counters are sent.
    void putFixed(std::uint8_t tag, std::uint64_t value, std::size_t width);

    std::size_t size() const { return out_.size(); }

private:
    void putHeader(std::uint8_t tag, std::size_t length);

    std::vector<std::uint8_t>& out_;
};

} // namespace TavGen
