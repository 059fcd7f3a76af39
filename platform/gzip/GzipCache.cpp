#include "platform/gzip/GzipCache.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <thread>
#include <unistd.h>
#include <vector>
#include <zlib.h>

namespace TavGzip {

namespace {

constexpr std::size_t kOutChunk = 1 << 20;
// Compressed bytes handed to zlib at a time: captures compress twenty to one,
// so this is well under a millisecond of inflating between two looks at the
// cancel flag.
constexpr std::size_t kInChunk = 16 * 1024;
// Progress calls over a whole file, so that a listener is not flooded.
constexpr std::size_t kProgressSteps = 200;

std::string cacheFolder() {
    if (const char* xdg = std::getenv("XDG_CACHE_HOME"); xdg && *xdg == '/')
        return std::string(xdg) + "/tavna";
    const char* home = std::getenv("HOME");
    return std::string(home && *home ? home : "/tmp") + "/.cache/tavna";
}

// A capture compresses well, but not a thousandfold: its time stamps and
// counters change from frame to frame. More than that, past a size no
// real capture's first bytes reach, is a file made to fill the disk.
constexpr std::uint64_t kMaxRatio = 1000;
constexpr std::uint64_t kRatioCheckedFrom = 64ull << 20;
// What the copy leaves free on its disk, for everything else on it.
constexpr std::uint64_t kKeepFree = 1ull << 30;
constexpr std::uint64_t kSpaceCheckEvery = 256ull << 20;

// The inflated bytes go to a file descriptor; every write is checked, and so
// is what the copy grows to against the compressed size and the free space.
class Output {
public:
    Output(const std::string& path, std::uint64_t compressedSize)
        : fd_(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600)), path_(path),
          compressed_(compressedSize) {
        if (fd_ < 0)
            throw GzipError(std::string("cannot write the inflated copy: ") + std::strerror(errno));
        checkSpace(0);
    }
    ~Output() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void write(const unsigned char* p, std::size_t n) {
        written_ += n;
        if (written_ > kRatioCheckedFrom && written_ > kMaxRatio * compressed_)
            throw GzipError("it inflates more than a thousandfold, as no capture does");
        if (written_ >= nextSpaceCheck_)
            checkSpace(n);
        while (n > 0) {
            const ssize_t done = ::write(fd_, p, n);
            if (done < 0 && errno == EINTR)
                continue;
            if (done <= 0)
                throw GzipError(std::string("cannot write the inflated copy: ") +
                                std::strerror(errno));
            p += done;
            n -= static_cast<std::size_t>(done);
        }
    }
    void close() {
        const int fd = fd_;
        fd_ = -1;
        if (::close(fd) != 0)
            throw GzipError(std::string("cannot write the inflated copy: ") + std::strerror(errno));
    }

private:
    void checkSpace(std::size_t coming) {
        std::error_code ec;
        const auto space = std::filesystem::space(std::filesystem::path(path_).parent_path(), ec);
        nextSpaceCheck_ = written_ + kSpaceCheckEvery;
        if (!ec && space.available < kKeepFree + coming)
            throw GzipError("inflating it would fill the disk of the cache folder (" +
                            std::to_string(space.available >> 20) + " MB free)");
    }

    int fd_;
    std::string path_;
    std::uint64_t compressed_;
    std::uint64_t written_ = 0;
    std::uint64_t nextSpaceCheck_ = 0;
};

// One zlib stream that reads gzip members, one after another as `gzip -c a b`
// writes them.
class Inflater {
public:
    Inflater() {
        if (inflateInit2(&z_, 15 + 16) != Z_OK)
            throw GzipError("cannot start inflating");
    }
    ~Inflater() { inflateEnd(&z_); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    // Inflates all of `in` into `out`; true at the end of a member.
    bool run(const std::uint8_t* in, std::size_t n, std::vector<unsigned char>& buffer, Output& out,
             std::size_t& used) {
        z_.next_in = const_cast<Bytef*>(in);
        z_.avail_in = static_cast<uInt>(n);
        int rc = Z_OK;
        do {
            z_.next_out = buffer.data();
            z_.avail_out = static_cast<uInt>(buffer.size());
            rc = ::inflate(&z_, Z_NO_FLUSH);
            if (rc != Z_OK && rc != Z_STREAM_END && rc != Z_BUF_ERROR)
                throw GzipError(std::string("corrupt compressed data") +
                                (z_.msg ? std::string(": ") + z_.msg : std::string()));
            out.write(buffer.data(), buffer.size() - z_.avail_out);
        } while (rc == Z_OK && (z_.avail_in > 0 || z_.avail_out == 0));
        used = n - z_.avail_in;
        if (rc == Z_STREAM_END)
            inflateReset(&z_);
        return rc == Z_STREAM_END;
    }

private:
    z_stream z_{};
};

void inflateAll(const std::uint8_t* data, std::size_t size, Output& out,
                const std::atomic<bool>& cancel, const std::function<void(double)>& progress,
                bool& cancelled) {
    Inflater inflater;
    std::vector<unsigned char> buffer(kOutChunk);
    std::size_t at = 0;
    std::size_t nextReport = 0;
    bool memberEnded = false;
    while (at < size) {
        if (cancel.load(std::memory_order_relaxed)) {
            cancelled = true;
            return;
        }
        std::size_t used = 0;
        memberEnded = inflater.run(data + at, std::min(kInChunk, size - at), buffer, out, used);
        at += used;
        if (used == 0 && !memberEnded)
            throw GzipError("corrupt compressed data");
        // Bytes after the last member that are not another one are padding
        // some writers leave; they hold no frames.
        if (memberEnded && !isGzip(data + at, size - at))
            break;
        if (progress && at >= nextReport) {
            nextReport = at + size / kProgressSteps;
            progress(static_cast<double>(at) / static_cast<double>(size));
        }
    }
    if (!memberEnded)
        throw GzipError("compressed data cut short");
}

} // namespace

bool isGzip(const std::uint8_t* data, std::size_t size) {
    return size >= 3 && data[0] == 0x1F && data[1] == 0x8B && data[2] == 8; // deflate
}

std::string GzipCache::folder() {
    return cacheFolder();
}

std::string GzipCache::copyPath(const std::string& path, std::uint64_t size, std::int64_t mtimeNs) {
    std::error_code ec;
    const std::filesystem::path absolute = std::filesystem::absolute(path, ec);
    const std::size_t hash = std::hash<std::string>{}(ec ? path : absolute.string());
    char name[96];
    std::snprintf(name, sizeof name, "%016zx-%llu-%lld.capture", hash,
                  static_cast<unsigned long long>(size), static_cast<long long>(mtimeNs));
    return cacheFolder() + "/" + name;
}

bool GzipCache::inflate(const std::uint8_t* data, std::size_t size, const std::string& copy,
                        const std::atomic<bool>& cancel,
                        const std::function<void(double)>& progress) {
    std::error_code ec;
    if (std::filesystem::exists(copy, ec))
        return true; // written whole before: copies appear only by renaming
    std::filesystem::create_directories(std::filesystem::path(copy).parent_path(), ec);
    // Each writer has a name of its own: another process, or another thread
    // of this one, may be making the same copy.
    const std::string part =
        copy + ".part" + std::to_string(::getpid()) + "-" +
        std::to_string(std::hash<std::thread::id>{}(std::this_thread::get_id()));
    bool cancelled = false;
    try {
        Output out(part, size);
        inflateAll(data, size, out, cancel, progress, cancelled);
        out.close();
    } catch (...) {
        remove(part);
        throw;
    }
    if (cancelled) {
        remove(part);
        return false;
    }
    std::filesystem::rename(part, copy, ec);
    if (ec) {
        remove(part);
        throw GzipError("cannot keep the inflated copy: " + ec.message());
    }
    return true;
}

void GzipCache::remove(const std::string& copy) {
    std::error_code ignored;
    std::filesystem::remove(copy, ignored);
}

} // namespace TavGzip
