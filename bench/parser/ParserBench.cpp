// tavna-bench-parser [CAPTURE]: parses a big SV capture from the page cache and
// compares the throughput with a walk over the same file's record headers
// through the same file access, the most any parse could reach.
#include "bench/BenchCapture.h"
#include "platform/parser/ContainerReader.h"
#include "platform/parser/MappedFile.h"
#include "platform/parser/PcapParser.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>
#include <vector>

using namespace TavIec61850Parser;

namespace {

// Live heap bytes, counted by the replaced global allocation functions below.
std::size_t liveBytes = 0;

constexpr std::size_t kHeader = alignof(std::max_align_t);

void* countedAlloc(std::size_t n) {
    auto* p = static_cast<unsigned char*>(std::malloc(n + kHeader));
    if (p == nullptr)
        throw std::bad_alloc();
    *reinterpret_cast<std::size_t*>(p) = n;
    liveBytes += n;
    return p + kHeader;
}

void countedFree(void* q) {
    if (q == nullptr)
        return;
    auto* p = static_cast<unsigned char*>(q) - kHeader;
    liveBytes -= *reinterpret_cast<std::size_t*>(p);
    std::free(p);
}

constexpr int kRuns = 5;
constexpr double kMB = 1e6;

double seconds(std::chrono::steady_clock::duration d) {
    return std::chrono::duration<double>(d).count();
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Touches every record header and nothing else, through the same mapping.
std::uint64_t walk(const std::string& path) {
    MappedFile file(path);
    auto reader = openContainer(path, file.data(), file.size());
    FrameRecord rec;
    std::uint64_t frames = 0;
    while (reader->next(rec))
        ++frames;
    return frames;
}

} // namespace

void* operator new(std::size_t n) {
    return countedAlloc(n);
}
void* operator new[](std::size_t n) {
    return countedAlloc(n);
}
void operator delete(void* p) noexcept {
    countedFree(p);
}
void operator delete[](void* p) noexcept {
    countedFree(p);
}
void operator delete(void* p, std::size_t) noexcept {
    countedFree(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    countedFree(p);
}

int main(int argc, char** argv) {
    const std::string path = argc > 1 ? argv[1] : TAVNA_BENCH_CAPTURE;
    if (argc <= 1)
        writeCaptureOnce(path, "--format pcap --sv 8 --rate 4000 --duration 100");
    const double megabytes = static_cast<double>(std::filesystem::file_size(path)) / kMB;
    walk(path); // into the page cache

    std::vector<double> walkTimes, parseTimes;
    std::uint64_t frames = 0;
    double heapPerFrame = 0;
    for (int run = 0; run < kRuns; ++run) {
        auto t0 = std::chrono::steady_clock::now();
        frames = walk(path);
        walkTimes.push_back(seconds(std::chrono::steady_clock::now() - t0));

        const std::size_t before = liveBytes;
        Db db;
        std::atomic<bool> cancel{false};
        t0 = std::chrono::steady_clock::now();
        PcapParser::parseFile(path, db, {}, cancel, nullptr);
        parseTimes.push_back(seconds(std::chrono::steady_clock::now() - t0));
        heapPerFrame = static_cast<double>(liveBytes - before) / static_cast<double>(frames);
    }

    const double walkRate = megabytes / median(walkTimes);
    const double parseRate = megabytes / median(parseTimes);
    std::printf("capture: %s, %.0f MB, %llu frames\n", path.c_str(), megabytes,
                static_cast<unsigned long long>(frames));
    std::printf("parse:   %.0f MB/s, %.2f million frames/s (median of %d)\n", parseRate,
                static_cast<double>(frames) / median(parseTimes) / 1e6, kRuns);
    std::printf("walk:    %.0f MB/s (record headers only)\n", walkRate);
    std::printf("ratio:   %.0f %% of the walk\n", 100.0 * parseRate / walkRate);
    std::printf("heap:    %.1f bytes per frame held after the parse\n", heapPerFrame);
    return 0;
}
