#include "capture/LiveCapture.h"

#include "capture/CaptureError.h"
#include "platform/gzip/GzipCache.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <pcap/pcap.h>
#include <poll.h>
#include <unistd.h>

namespace TavCapture {

namespace {

// Frames longer than any SV or GOOSE frame are still kept whole.
constexpr int kSnapLength = 262144;
// How long the kernel may hold frames back: also how often the thread looks
// at the clock to close a segment or stop.
constexpr int kWakeMs = 100;

// The segments of a process that ended without removing them (a crash, a
// kill) would hold their disk space for good: folders of processes that no
// longer run go when another capture starts.
void removeStaleFolders(const std::string& cache) {
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(cache, ec)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind("live-", 0) != 0)
            continue;
        const long pid = std::strtol(name.c_str() + 5, nullptr, 10);
        if (pid > 0 && ::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH)
            std::filesystem::remove_all(entry.path(), ec);
    }
}

std::string freshFolder() {
    static std::atomic<unsigned> made{0};
    const std::string cache = TavGzip::GzipCache::folder();
    removeStaleFolders(cache);
    return cache + "/live-" + std::to_string(::getpid()) + "-" + std::to_string(made.fetch_add(1));
}

bool refusedRight(int status) {
    return status == PCAP_ERROR_PERM_DENIED || status == PCAP_ERROR_PROMISC_PERM_DENIED;
}

} // namespace

const char* LiveCapture::filterText() {
    // `vlan` moves the offsets of what follows it to behind the tag, so the
    // tagged kinds are asked for after it.
    return "ether proto 0x88ba or ether proto 0x88b8 or ether proto 0x892f or "
           "(vlan and (ether proto 0x88ba or ether proto 0x88b8 or ether proto 0x892f))";
}

LiveCapture::LiveCapture(CaptureOptions options, Listener listener)
    : options_(std::move(options)), listener_(std::move(listener)) {
    if (options_.folder.empty())
        options_.folder = freshFolder();
    // Opened first: a capture refused leaves no folder behind.
    open();
    std::error_code ec;
    std::filesystem::create_directories(options_.folder, ec);
    if (ec) {
        pcap_close(handle_);
        throw CaptureError("cannot make " + options_.folder + ": " + ec.message(), false);
    }
    running_ = true;
    thread_ = std::thread([this] { run(); });
}

LiveCapture::~LiveCapture() {
    stop();
    if (handle_ != nullptr)
        pcap_close(handle_);
    std::error_code ec;
    std::filesystem::remove_all(options_.folder, ec);
}

void LiveCapture::open() {
    try {
        configure();
    } catch (...) {
        if (handle_ != nullptr)
            pcap_close(handle_);
        handle_ = nullptr;
        throw;
    }
}

void LiveCapture::configure() {
    char error[PCAP_ERRBUF_SIZE] = {};
    const std::string& name = options_.interface;
    handle_ = pcap_create(name.c_str(), error);
    if (handle_ == nullptr)
        throw CaptureError("cannot open " + name + ": " + error, false);
    pcap_set_snaplen(handle_, kSnapLength);
    pcap_set_promisc(handle_, 1);
    pcap_set_timeout(handle_, kWakeMs);
    pcap_set_buffer_size(handle_, options_.kernelBuffer);
    pcap_set_tstamp_precision(handle_, PCAP_TSTAMP_PRECISION_NANO);
    const int status = pcap_activate(handle_);
    if (status < 0) {
        const std::string why =
            status == PCAP_ERROR ? pcap_geterr(handle_) : pcap_statustostr(status);
        throw CaptureError("cannot capture on " + name + ": " + why, refusedRight(status));
    }
    if (pcap_setnonblock(handle_, 1, error) != 0)
        throw CaptureError("cannot capture on " + name + ": " + error, false);
    if (pcap_datalink(handle_) != DLT_EN10MB)
        throw CaptureError(name + " is not an Ethernet interface", false);
    bpf_program program{};
    if (pcap_compile(handle_, &program, filterText(), 1, PCAP_NETMASK_UNKNOWN) != 0 ||
        pcap_setfilter(handle_, &program) != 0) {
        pcap_freecode(&program);
        throw CaptureError("cannot filter " + name + ": " + pcap_geterr(handle_), false);
    }
    pcap_freecode(&program);
}

void LiveCapture::stop() {
    stopping_ = true;
    if (handle_ != nullptr)
        pcap_breakloop(handle_);
    if (thread_.joinable())
        thread_.join();
}

void LiveCapture::run() {
    countedAt_ = std::chrono::steady_clock::now();
    std::string failure;
    pollfd wait{pcap_get_selectable_fd(handle_), POLLIN, 0};
    while (!stopping_.load() && writeError_.empty()) {
        // The kernel wakes no one while no frame comes, and a segment must
        // still close on time and a stop be heard.
        ::poll(&wait, 1, kWakeMs);
        const int got = pcap_dispatch(handle_, -1, &LiveCapture::onFrame,
                                      reinterpret_cast<unsigned char*>(this));
        if (got == PCAP_ERROR) {
            failure = pcap_geterr(handle_);
            break;
        }
        const auto now = std::chrono::steady_clock::now();
        if (current_ && (now - segmentOpened_ >= options_.segmentTime ||
                         current_->bytes() >= options_.segmentBytes))
            rotate();
        if (now - countedAt_ >= std::chrono::seconds(1))
            refreshCounts(now);
    }
    rotate();
    refreshCounts(std::chrono::steady_clock::now());
    if (failure.empty())
        failure = writeError_;
    running_ = false;
    if (!failure.empty() && !stopping_.load() && listener_.failed)
        listener_.failed(failure);
}

void LiveCapture::onFrame(unsigned char* user, const pcap_pkthdr* header,
                          const unsigned char* bytes) {
    auto* self = reinterpret_cast<LiveCapture*>(user);
    try {
        if (!self->current_) {
            self->current_ = std::make_unique<SegmentFile>(self->nextSegmentPath());
            self->segmentOpened_ = std::chrono::steady_clock::now();
        }
        // With nanosecond precision asked for, tv_usec holds nanoseconds.
        const std::uint64_t ns = static_cast<std::uint64_t>(header->ts.tv_sec) * 1000000000ull +
                                 static_cast<std::uint64_t>(header->ts.tv_usec);
        self->current_->append(ns, bytes, header->caplen, header->len);
        self->captured_.fetch_add(1, std::memory_order_relaxed);
    } catch (const CaptureError& e) {
        self->writeError_ = e.what();
        pcap_breakloop(self->handle_);
    }
}

void LiveCapture::rotate() {
    if (!current_)
        return;
    try {
        closeSegment();
    } catch (const CaptureError& e) {
        writeError_ = e.what();
    }
}

void LiveCapture::closeSegment() {
    std::unique_ptr<SegmentFile> segment = std::move(current_);
    segment->close();
    SegmentBatch batch{segment->path(), {}};
    {
        std::lock_guard lock(keptMutex_);
        kept_.emplace_back(segment->path(), segment->bytes());
        keptBytes_ += segment->bytes();
        // The newest segment stays even when it alone is over the limit.
        while (keptBytes_ > options_.ringBytes && kept_.size() > 1) {
            keptBytes_ -= kept_.front().second;
            batch.retired.push_back(kept_.front().first);
            kept_.pop_front();
        }
    }
    if (listener_.segment)
        listener_.segment(std::move(batch));
}

void LiveCapture::refreshCounts(std::chrono::steady_clock::time_point now) {
    const std::uint64_t frames = captured_.load(std::memory_order_relaxed);
    const double seconds = std::chrono::duration<double>(now - countedAt_).count();
    if (seconds > 0)
        perSecond_ = static_cast<std::uint64_t>((frames - countedFrames_) / seconds + 0.5);
    countedFrames_ = frames;
    countedAt_ = now;
    pcap_stat stat{};
    if (pcap_stats(handle_, &stat) == 0)
        dropped_ = std::uint64_t{stat.ps_drop} + stat.ps_ifdrop;
}

std::string LiveCapture::nextSegmentPath() {
    char name[32];
    std::snprintf(name, sizeof name, "/segment-%06llu.pcapng",
                  static_cast<unsigned long long>(++segmentNumber_));
    return options_.folder + name;
}

CaptureCounts LiveCapture::counts() const {
    return {captured_.load(), running_.load() ? perSecond_.load() : 0, dropped_.load()};
}

std::vector<std::string> LiveCapture::segments() const {
    std::lock_guard lock(keptMutex_);
    std::vector<std::string> paths;
    for (const auto& [path, bytes] : kept_)
        paths.push_back(path);
    return paths;
}

void LiveCapture::save(const std::string& path) const {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    for (const std::string& segment : segments()) {
        std::ifstream in(segment, std::ios::binary);
        if (!in)
            throw CaptureError("cannot read " + segment, false);
        out << in.rdbuf();
    }
    out.close();
    if (!out)
        throw CaptureError("cannot write " + path, false);
}

} // namespace TavCapture
