#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

namespace TavGzip {

// Compressed data that cannot be inflated, or a copy that cannot be written;
// the message says why, without the file's name.
class GzipError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// True when the bytes begin as a gzip member does.
bool isGzip(const std::uint8_t* data, std::size_t size);

// A gzip file is inflated once into a copy in the user's cache folder, named
// after the file's path, size and modification time: frames are then read by
// offset from the copy, and a file changed since gets a copy of its own.
class GzipCache {
public:
    // Where the copy of the file as it is now lies ($XDG_CACHE_HOME/tavna,
    // else ~/.cache/tavna).
    static std::string copyPath(const std::string& path, std::uint64_t size, std::int64_t mtimeNs);
    // The user's cache folder those copies go to; live captures write there too.
    static std::string folder();

    // Inflates `data` (the whole compressed file) into `copy` unless the copy
    // is there already. Reports the fraction of the compressed bytes used and
    // polls `cancel`; a cancelled or failed inflation leaves nothing behind.
    // False when cancelled; throws GzipError when the data is corrupt or cut
    // short, or the copy cannot be written.
    static bool inflate(const std::uint8_t* data, std::size_t size, const std::string& copy,
                        const std::atomic<bool>& cancel,
                        const std::function<void(double)>& progress);

    // Removes a copy; a missing one is fine.
    static void remove(const std::string& copy);
};

} // namespace TavGzip
