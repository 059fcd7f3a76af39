// tavna-bench-parser [CAPTURE...]: parses big captures from the page cache with
// one worker and with one per core, and compares each throughput with a walk
// over the same file's record headers through the same file access, the most
// any single-threaded parse could reach. Without arguments it parses three
// captures written once by tavna-gen: every stream its own addresses, eight
// streams of one publisher told apart by svID only, and SV of two ASDUs a
// frame among fifty GOOSE publishers.
#include "bench/BenchCapture.h"
#include "platform/parser/ContainerReader.h"
#include "platform/parser/MappedFile.h"
#include "platform/parser/PcapParser.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <new>
#include <string>
#include <thread>
#include <vector>

using namespace TavIec61850Parser;

namespace {

// Live heap bytes, counted by the replaced global allocation functions below.
std::atomic<std::size_t> liveBytes{0};

constexpr std::size_t kHeader = alignof(std::max_align_t);

void* countedAlloc(std::size_t n) {
    auto* p = static_cast<unsigned char*>(std::malloc(n + kHeader));
    if (p == nullptr)
        throw std::bad_alloc();
    *reinterpret_cast<std::size_t*>(p) = n;
    liveBytes.fetch_add(n, std::memory_order_relaxed);
    return p + kHeader;
}

void countedFree(void* q) {
    if (q == nullptr)
        return;
    auto* p = static_cast<unsigned char*>(q) - kHeader;
    liveBytes.fetch_sub(*reinterpret_cast<std::size_t*>(p), std::memory_order_relaxed);
    std::free(p);
}

constexpr int kRuns = 7;
constexpr double kMB = 1e6;

struct Capture {
    const char* name;
    const char* generatorArguments;
};

const Capture kCaptures[] = {
    {"bench-8sv-100s.pcap", "--format pcap --sv 8 --rate 4000 --duration 100"},
    {"bench-8sv-one-publisher-vlan5-100s.pcap",
     "--format pcap --sv 8 --rate 4000 --shared-publisher --vlan 5 --duration 100"},
    {"bench-8sv-2asdu-50goose-100s.pcap",
     "--format pcap --sv 8 --rate 4000 --asdus 2 --goose 50 --duration 100"},
};

double seconds(std::chrono::steady_clock::duration d) {
    return std::chrono::duration<double>(d).count();
}

// Processor time of every thread of the process so far.
double cpuSeconds() {
    timespec t{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
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

void parse(const std::string& path, Db& db, unsigned workers) {
    std::atomic<bool> cancel{false};
    FileStats stats;
    PcapParser::parseFile(path, db, {}, cancel, nullptr, stats, workers);
}

void measure(const std::string& path) {
    const double megabytes = static_cast<double>(std::filesystem::file_size(path)) / kMB;
    walk(path); // into the page cache
    const unsigned cores = std::max(1u, std::thread::hardware_concurrency());
    const std::vector<unsigned> workerCounts =
        cores > 1 ? std::vector<unsigned>{1, cores} : std::vector<unsigned>{1};

    // Walk and parses alternate within each run, so that load from elsewhere
    // hits them alike; the parses swap places every run, since the one after
    // another pays for the memory the other gave back.
    std::vector<double> walkTimes;
    std::vector<std::vector<double>> parseTimes(workerCounts.size());
    std::vector<std::vector<double>> cpuTimes(workerCounts.size());
    std::vector<double> heapPerFrame(workerCounts.size());
    std::uint64_t frames = 0;
    for (int run = 0; run < kRuns; ++run) {
        auto t0 = std::chrono::steady_clock::now();
        frames = walk(path);
        walkTimes.push_back(seconds(std::chrono::steady_clock::now() - t0));
        for (std::size_t i = 0; i < workerCounts.size(); ++i) {
            const std::size_t w = run % 2 ? workerCounts.size() - 1 - i : i;
            const std::size_t before = liveBytes.load();
            Db db;
            const double cpu0 = cpuSeconds();
            t0 = std::chrono::steady_clock::now();
            parse(path, db, workerCounts[w]);
            parseTimes[w].push_back(seconds(std::chrono::steady_clock::now() - t0));
            cpuTimes[w].push_back(cpuSeconds() - cpu0);
            heapPerFrame[w] =
                static_cast<double>(liveBytes.load() - before) / static_cast<double>(frames);
        }
    }

    const double walkRate = megabytes / median(walkTimes);
    std::printf("capture: %s, %.0f MB, %llu frames\n", path.c_str(), megabytes,
                static_cast<unsigned long long>(frames));
    std::printf("  walk:       %5.0f MB/s (record headers only, median of %d)\n", walkRate, kRuns);
    for (std::size_t w = 0; w < workerCounts.size(); ++w) {
        const double t = median(parseTimes[w]);
        std::printf("  %2u worker%s: %5.0f MB/s, %5.2f M frames/s, %3.0f %% of the walk, "
                    "%.1f heap bytes per frame, %.2f cores busy\n",
                    workerCounts[w], workerCounts[w] == 1 ? " " : "s", megabytes / t,
                    static_cast<double>(frames) / t / 1e6, 100.0 * megabytes / t / walkRate,
                    heapPerFrame[w], median(cpuTimes[w]) / t);
    }
    std::fflush(stdout);
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
    std::vector<std::string> paths(argv + 1, argv + argc);
    if (paths.empty()) {
        for (const Capture& c : kCaptures) {
            const std::string path = std::string(TAVNA_BENCH_DIR) + "/" + c.name;
            writeCaptureOnce(path, c.generatorArguments);
            paths.push_back(path);
        }
    }
    for (const std::string& path : paths)
        measure(path);
    return 0;
}
