#include "capture/SegmentFile.h"

#include "capture/CaptureError.h"

#include <array>
#include <cerrno>
#include <cstring>

namespace TavCapture {

namespace {

constexpr std::uint32_t kSectionHeader = 0x0A0D0D0A;
constexpr std::uint32_t kInterfaceDescription = 1;
constexpr std::uint32_t kEnhancedPacket = 6;
constexpr std::uint32_t kByteOrderMagic = 0x1A2B3C4D;
constexpr std::uint16_t kLinkEthernet = 1;
constexpr std::uint32_t kSnapLength = 262144;
// Writes go out in large pieces: at a few hundred thousand frames a second a
// write per frame would cost more than the capture itself.
constexpr std::size_t kBuffer = 1 << 20;

std::uint32_t padded(std::uint32_t size) {
    return (size + 3u) & ~3u;
}

} // namespace

SegmentFile::SegmentFile(std::string path) : path_(std::move(path)) {
    file_ = std::fopen(path_.c_str(), "wbe");
    if (file_ == nullptr)
        throw CaptureError("cannot write " + path_ + ": " + std::strerror(errno), false);
    std::setvbuf(file_, nullptr, _IOFBF, kBuffer);

    // Host byte order throughout: the byte-order magic tells readers which.
    putU32(kSectionHeader);
    putU32(28);
    putU32(kByteOrderMagic);
    const std::uint16_t version[2] = {1, 0};
    put(version, sizeof version);
    const std::int64_t unknownLength = -1;
    put(&unknownLength, sizeof unknownLength);
    putU32(28);

    putU32(kInterfaceDescription);
    putU32(32);
    const std::uint16_t link[2] = {kLinkEthernet, 0};
    put(link, sizeof link);
    putU32(kSnapLength);
    // if_tsresol = 9 (nanoseconds), then the end of options.
    const std::array<std::uint8_t, 8> resolution = {9, 0, 1, 0, 9, 0, 0, 0};
    put(resolution.data(), resolution.size());
    putU32(0);
    putU32(32);
}

SegmentFile::~SegmentFile() {
    if (file_ != nullptr)
        std::fclose(file_);
}

void SegmentFile::append(std::uint64_t timeNs, const std::uint8_t* frame, std::uint32_t captured,
                         std::uint32_t original) {
    const std::uint32_t total = 32 + padded(captured);
    const std::uint32_t head[7] = {kEnhancedPacket,
                                   total,
                                   0,
                                   static_cast<std::uint32_t>(timeNs >> 32),
                                   static_cast<std::uint32_t>(timeNs),
                                   captured,
                                   original};
    put(head, sizeof head);
    put(frame, captured);
    static constexpr std::uint8_t zeros[4] = {};
    put(zeros, padded(captured) - captured);
    putU32(total);
    ++frames_;
}

void SegmentFile::close() {
    if (file_ == nullptr)
        return;
    const bool flushed = std::fflush(file_) == 0;
    const int error = errno;
    const bool closed = std::fclose(file_) == 0;
    file_ = nullptr;
    if (failed_ || !flushed || !closed)
        throw CaptureError("cannot write " + path_ + ": " + std::strerror(error), false);
}

void SegmentFile::put(const void* data, std::size_t size) {
    if (size == 0)
        return;
    if (std::fwrite(data, 1, size, file_) != size)
        failed_ = true;
    bytes_ += size;
}

} // namespace TavCapture
