#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace TavCapture {

// One pcapng file being written: a section, one Ethernet interface with
// nanosecond time stamps, then a block per frame. It is read only once
// closed, so that a file the parser has seen never changes.
class SegmentFile {
public:
    // Throws CaptureError when the file cannot be made.
    explicit SegmentFile(std::string path);
    ~SegmentFile();
    SegmentFile(const SegmentFile&) = delete;
    SegmentFile& operator=(const SegmentFile&) = delete;

    void append(std::uint64_t timeNs, const std::uint8_t* frame, std::uint32_t captured,
                std::uint32_t original);
    // Flushes and closes; throws CaptureError when the disk refused a write.
    void close();

    const std::string& path() const { return path_; }
    std::uint64_t bytes() const { return bytes_; }
    std::uint64_t frames() const { return frames_; }

private:
    void put(const void* data, std::size_t size);
    void putU32(std::uint32_t value) { put(&value, sizeof value); }

    std::string path_;
    std::FILE* file_ = nullptr;
    std::uint64_t bytes_ = 0;
    std::uint64_t frames_ = 0;
    bool failed_ = false;
};

} // namespace TavCapture
