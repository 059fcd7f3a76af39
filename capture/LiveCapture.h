#pragma once

#include "capture/SegmentFile.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

struct pcap;
struct pcap_pkthdr;

namespace TavCapture {

struct CaptureOptions {
    std::string interface;
    // Where the segments go; empty: a folder of its own in the cache folder.
    std::string folder;
    // The kept segments' size at most; the oldest go first.
    std::uint64_t ringBytes = 2ull << 30;
    // A segment is closed and handed over this often, or when this large.
    std::chrono::milliseconds segmentTime{500};
    std::uint64_t segmentBytes = 64ull << 20;
    // Room in the kernel for bursts while the thread writes a segment.
    int kernelBuffer = 128 << 20;
};

struct CaptureCounts {
    std::uint64_t captured = 0;
    std::uint64_t perSecond = 0;
    std::uint64_t dropped = 0; // by the kernel and by the interface
};

// A segment just closed, and the oldest segments the ring let go for it: the
// listener removes those files once nothing reads their frames any more.
struct SegmentBatch {
    std::string closed;
    std::vector<std::string> retired;
};

// Captures the SV and GOOSE frames of one interface on a thread of its own,
// into a ring of pcapng segment files.
class LiveCapture {
public:
    struct Listener {
        // Capture thread, once per closed segment that holds frames.
        std::function<void(SegmentBatch)> segment;
        // Capture thread, when the interface fails (goes down, disappears):
        // the thread has ended and what it captured was handed over.
        std::function<void(const std::string& reason)> failed;
    };

    // Opens the interface and starts; throws CaptureError.
    LiveCapture(CaptureOptions options, Listener listener);
    ~LiveCapture();
    LiveCapture(const LiveCapture&) = delete;
    LiveCapture& operator=(const LiveCapture&) = delete;

    // Ends the thread after handing over the segment it was writing.
    void stop();
    bool running() const { return running_.load(); }
    CaptureCounts counts() const;
    // The kept segments, oldest first.
    std::vector<std::string> segments() const;
    // All kept frames as one pcapng file (a section per segment); throws
    // CaptureError when it cannot be written.
    void save(const std::string& path) const;
    const std::string& folder() const { return options_.folder; }

    // The filter's text: SV and GOOSE, also VLAN-tagged and inside HSR.
    static const char* filterText();

private:
    void open();
    void configure();
    void run();
    static void onFrame(unsigned char* self, const pcap_pkthdr* header,
                        const unsigned char* bytes);
    void rotate();
    void closeSegment();
    void refreshCounts(std::chrono::steady_clock::time_point now);
    std::string nextSegmentPath();

    CaptureOptions options_;
    Listener listener_;
    pcap* handle_ = nullptr;
    std::thread thread_;
    std::atomic<bool> stopping_{false};
    std::atomic<bool> running_{false};

    // Capture thread only.
    std::unique_ptr<SegmentFile> current_;
    std::chrono::steady_clock::time_point segmentOpened_;
    std::chrono::steady_clock::time_point countedAt_;
    std::uint64_t countedFrames_ = 0;
    std::uint64_t segmentNumber_ = 0;
    std::string writeError_;

    std::atomic<std::uint64_t> captured_{0};
    std::atomic<std::uint64_t> perSecond_{0};
    std::atomic<std::uint64_t> dropped_{0};

    mutable std::mutex keptMutex_;
    std::deque<std::pair<std::string, std::uint64_t>> kept_; // path, bytes
    std::uint64_t keptBytes_ = 0;
};

} // namespace TavCapture
