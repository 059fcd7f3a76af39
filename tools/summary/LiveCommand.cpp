#include "tools/summary/LiveCommand.h"

#include "capture/CaptureError.h"
#include "capture/LiveCapture.h"

#include <atomic>
#include <charconv>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <thread>
#include <unistd.h>

namespace TavInspect {

namespace {

std::atomic<bool> interrupted{false};

extern "C" void onInterrupt(int) {
    interrupted = true;
}

struct LiveOptions {
    std::string interface;
    double seconds = 10.0;
    std::string write;
};

// The temporary file goes when the report has been written.
struct TemporaryFile {
    std::string path;
    ~TemporaryFile() {
        if (!path.empty()) {
            std::error_code ignored;
            std::filesystem::remove(path, ignored);
        }
    }
};

bool takeOptions(std::vector<std::string>& args, LiveOptions& o) {
    std::vector<std::string> rest;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool valued = a == "--interface" || a == "--seconds" || a == "--write";
        if (!valued) {
            rest.push_back(a);
            continue;
        }
        if (++i >= args.size())
            return false;
        const std::string& value = args[i];
        if (a == "--interface") {
            o.interface = value;
        } else if (a == "--write") {
            o.write = value;
        } else {
            const auto [end, ec] =
                std::from_chars(value.data(), value.data() + value.size(), o.seconds);
            if (ec != std::errc() || end != value.data() + value.size() || !(o.seconds > 0))
                return false;
        }
    }
    args = std::move(rest);
    return true;
}

void waitFor(const TavCapture::LiveCapture& capture, double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!interrupted.load() && capture.running() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

} // namespace

std::optional<int> captureFromInterface(std::vector<std::string>& args) {
    static TemporaryFile temporary;
    LiveOptions o;
    if (!takeOptions(args, o)) {
        std::cerr << "tavna-inspect: --interface IF [--seconds S] [--write OUT.pcapng]\n";
        return 2;
    }
    if (o.interface.empty())
        return std::nullopt;
    if (o.write.empty()) {
        o.write = (std::filesystem::temp_directory_path() /
                   ("tavna-inspect-" + std::to_string(::getpid()) + ".pcapng"))
                      .string();
        temporary.path = o.write;
    }
    std::string failure;
    try {
        TavCapture::CaptureOptions options;
        options.interface = o.interface;
        TavCapture::LiveCapture capture(
            options, {nullptr, [&](const std::string& reason) { failure = reason; }});
        std::signal(SIGINT, onInterrupt);
        waitFor(capture, o.seconds);
        capture.stop();
        std::signal(SIGINT, SIG_DFL);
        capture.save(o.write);
    } catch (const TavCapture::CaptureError& e) {
        std::cerr << "tavna-inspect: " << e.what() << '\n';
        return 1;
    }
    if (!failure.empty())
        std::cerr << "tavna-inspect: warning: the capture ended early: " << failure << '\n';
    args.push_back(o.write);
    return std::nullopt;
}

} // namespace TavInspect
