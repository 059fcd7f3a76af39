#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

namespace TavIec61850Parser {

// A read that would leave its buffer. Carries the position the read started at
// so that container readers can say where a file was cut short.
class OutOfBounds : public std::runtime_error {
public:
    OutOfBounds(std::size_t position, std::size_t wanted)
        : std::runtime_error("read of " + std::to_string(wanted) + " bytes at " +
                             std::to_string(position) + " leaves the buffer"),
          position_(position) {}
    std::size_t position() const { return position_; }

private:
    std::size_t position_;
};

// A cursor over bytes someone else owns. Every read is checked against the end
// and throws OutOfBounds instead of reading past it.
class ByteReader {
public:
    ByteReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    std::size_t position() const { return pos_; }
    std::size_t size() const { return size_; }
    std::size_t remaining() const { return size_ - pos_; }
    bool atEnd() const { return pos_ == size_; }
    const std::uint8_t* data() const { return data_; }
    const std::uint8_t* here() const { return data_ + pos_; }

    void require(std::size_t n) const {
        if (n > size_ - pos_)
            throw OutOfBounds(pos_, n);
    }
    void seek(std::size_t to) {
        if (to > size_)
            throw OutOfBounds(to, 0);
        pos_ = to;
    }
    void skip(std::size_t n) {
        require(n);
        pos_ += n;
    }
    const std::uint8_t* bytes(std::size_t n) {
        require(n);
        const std::uint8_t* p = data_ + pos_;
        pos_ += n;
        return p;
    }
    std::uint8_t u8() { return *bytes(1); }
    std::uint16_t be16() { return load16(bytes(2), true); }
    std::uint32_t be32() { return load32(bytes(4), true); }
    // Container fields come in the file's own byte order.
    std::uint16_t u16(bool bigEndian) { return load16(bytes(2), bigEndian); }
    std::uint32_t u32(bool bigEndian) { return load32(bytes(4), bigEndian); }
    std::uint64_t u64(bool bigEndian) { return load64(bytes(8), bigEndian); }

    // A reader over the next n bytes; this one moves past them.
    ByteReader sub(std::size_t n) {
        const std::uint8_t* p = bytes(n);
        return ByteReader(p, n);
    }

    static std::uint16_t load16(const std::uint8_t* p, bool bigEndian) {
        std::uint16_t v;
        std::memcpy(&v, p, 2);
        return bigEndian == (std::endian::native == std::endian::big) ? v : __builtin_bswap16(v);
    }
    static std::uint32_t load32(const std::uint8_t* p, bool bigEndian) {
        std::uint32_t v;
        std::memcpy(&v, p, 4);
        return bigEndian == (std::endian::native == std::endian::big) ? v : __builtin_bswap32(v);
    }
    static std::uint64_t load64(const std::uint8_t* p, bool bigEndian) {
        std::uint64_t v;
        std::memcpy(&v, p, 8);
        return bigEndian == (std::endian::native == std::endian::big) ? v : __builtin_bswap64(v);
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t pos_ = 0;
};

} // namespace TavIec61850Parser
