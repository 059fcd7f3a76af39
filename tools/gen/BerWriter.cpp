#include "tools/gen/BerWriter.h"

namespace TavGen {

namespace {
std::size_t lengthOctets(std::size_t length) {
    std::size_t n = 0;
    for (std::size_t v = length; v != 0; v >>= 8)
        ++n;
    return n;
}
} // namespace

void BerWriter::putHeader(std::uint8_t tag, std::size_t length) {
    out_.push_back(tag);
    if (length < 0x80) {
        out_.push_back(static_cast<std::uint8_t>(length));
        return;
    }
    const std::size_t n = lengthOctets(length);
    out_.push_back(static_cast<std::uint8_t>(0x80 | n));
    for (std::size_t i = n; i-- > 0;)
        out_.push_back(static_cast<std::uint8_t>(length >> (8 * i)));
}

std::size_t BerWriter::open(std::uint8_t tag) {
    out_.push_back(tag);
    out_.push_back(0);
    return out_.size();
}

void BerWriter::close(std::size_t handle) {
    const std::size_t length = out_.size() - handle;
    if (length < 0x80) {
        out_[handle - 1] = static_cast<std::uint8_t>(length);
        return;
    }
    const std::size_t n = lengthOctets(length);
    out_[handle - 1] = static_cast<std::uint8_t>(0x80 | n);
    out_.insert(out_.begin() + static_cast<std::ptrdiff_t>(handle), n, 0);
    for (std::size_t i = 0; i < n; ++i)
        out_[handle + i] = static_cast<std::uint8_t>(length >> (8 * (n - 1 - i)));
}

void BerWriter::putBytes(std::uint8_t tag, std::span<const std::uint8_t> bytes) {
    putHeader(tag, bytes.size());
    out_.insert(out_.end(), bytes.begin(), bytes.end());
}

void BerWriter::putString(std::uint8_t tag, std::string_view text) {
    putHeader(tag, text.size());
    out_.insert(out_.end(), text.begin(), text.end());
}

void BerWriter::putBool(std::uint8_t tag, bool value) {
    putHeader(tag, 1);
    out_.push_back(value ? 0x01 : 0x00);
}

void BerWriter::putInteger(std::uint8_t tag, std::int64_t value) {
    std::size_t width = 8;
    // Drop leading octets that only repeat the sign of the next one.
    while (width > 1) {
        const auto top = static_cast<std::uint8_t>(value >> (8 * (width - 1)));
        const bool nextNegative = ((value >> (8 * (width - 2))) & 0x80) != 0;
        if ((top == 0x00 && !nextNegative) || (top == 0xFF && nextNegative))
            --width;
        else
            break;
    }
    putFixed(tag, static_cast<std::uint64_t>(value), width);
}

void BerWriter::putFixed(std::uint8_t tag, std::uint64_t value, std::size_t width) {
    putHeader(tag, width);
    for (std::size_t i = width; i-- > 0;)
        out_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

} // namespace TavGen
