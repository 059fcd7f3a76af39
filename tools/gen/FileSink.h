#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace TavGen {

// A write-only file with a large buffer of its own: captures of a gigabyte are
// written frame by frame, and one system call per frame would dominate.
class FileSink {
public:
    explicit FileSink(const std::string& path);
    ~FileSink();
    FileSink(const FileSink&) = delete;
    FileSink& operator=(const FileSink&) = delete;

    void write(const std::uint8_t* data, std::size_t size);
    // Flushes and closes; throws when the data did not reach the file.
    void close();

private:
    void drain();

    std::string path_;
    std::FILE* file_ = nullptr;
    std::vector<std::uint8_t> buffer_;
    std::size_t used_ = 0;
};

} // namespace TavGen
