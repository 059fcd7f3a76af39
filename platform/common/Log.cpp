#include "platform/common/Log.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>

namespace TavLog {

namespace {

struct LogState {
    std::mutex mutex;
    std::string path;
    bool echo = true;
    std::ofstream file;
    bool fileTried = false;
};

LogState& state() {
    static LogState s;
    return s;
}

std::string defaultPath() {
    std::filesystem::path dir;
    if (const char* xdg = std::getenv("XDG_STATE_HOME"); xdg != nullptr && *xdg != '\0')
        dir = xdg;
    else if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0')
        dir = std::filesystem::path(home) / ".local" / "state";
    else
        dir = std::filesystem::temp_directory_path();
    return (dir / "tavna" / "tavna.log").string();
}

std::string timestamp() {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const std::time_t t = system_clock::to_time_t(now);
    const auto ms = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm local{};
    localtime_r(&t, &local);
    char buf[32];
    std::strftime(buf, sizeof buf, "%Y-%m-%d %H:%M:%S", &local);
    char out[48];
    std::snprintf(out, sizeof out, "%s.%03d", buf, static_cast<int>(ms));
    return out;
}

// Opens the file on first use; a folder or file that cannot be written only
// turns the file half of the log off.
void ensureOpen(LogState& s) {
    if (s.fileTried)
        return;
    s.fileTried = true;
    if (s.path.empty())
        s.path = defaultPath();
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(s.path).parent_path(), ec);
    s.file.open(s.path, std::ios::app);
}

void write(const char* level, const std::string& message) {
    LogState& s = state();
    const std::string line = timestamp() + " [" + level + "] " + message + "\n";
    std::lock_guard<std::mutex> lock(s.mutex);
    ensureOpen(s);
    if (s.file.is_open()) {
        s.file << line;
        s.file.flush();
    }
    if (s.echo)
        std::cerr << line << std::flush;
}

} // namespace

void Log::writeInfo(const std::string& message) {
    write("INFO", message);
}

void Log::writeError(const std::string& message) {
    write("ERROR", message);
}

std::string Log::filePath() {
    LogState& s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    return s.path.empty() ? defaultPath() : s.path;
}

void Log::setFilePath(const std::string& path) {
    LogState& s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    s.file.close();
    s.path = path;
    s.fileTried = false;
}

void Log::setEcho(bool echo) {
    LogState& s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    s.echo = echo;
}

} // namespace TavLog
