#include "host/CommandLine.h"

#include <cstdlib>
#include <filesystem>

namespace TavHost {

namespace {

std::string moduleFromEnvironment() {
    const char* value = std::getenv("TAVNA_MODULE");
    return value != nullptr ? value : "";
}

} // namespace

std::string defaultModulePath(const char* argv0) {
    namespace fs = std::filesystem;
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (ec || exe.empty())
        exe = fs::absolute(argv0 != nullptr ? argv0 : "tavna", ec);
    const char* const name = "libtavna-network-analyzer.so";
    // Beside the executable in the build; under lib/tavna once installed.
    const fs::path beside = exe.parent_path() / "modules" / name;
    const fs::path installed = exe.parent_path().parent_path() / "lib" / "tavna" / "modules" / name;
    return (fs::exists(beside, ec) || !fs::exists(installed, ec) ? beside : installed).string();
}

CommandLine CommandLine::parse(int argc, char** argv) {
    CommandLine line;
    bool onlyFiles = false;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (onlyFiles) {
            line.files.push_back(arg);
        } else if (arg == "--") {
            onlyFiles = true;
        } else if (arg == "--help" || arg == "-h") {
            line.help = true;
        } else if (arg == "--module") {
            if (i + 1 >= argc) {
                line.error = "--module needs a path";
                return line;
            }
            line.modulePath = argv[++i];
        } else if (arg.rfind("--module=", 0) == 0) {
            line.modulePath = arg.substr(9);
        } else if (arg.rfind("--", 0) == 0) {
            line.error = "unknown option " + arg;
            return line;
        } else {
            line.files.push_back(arg);
        }
    }
    if (line.modulePath.empty())
        line.modulePath = moduleFromEnvironment();
    if (line.modulePath.empty())
        line.modulePath = defaultModulePath(argc > 0 ? argv[0] : nullptr);
    return line;
}

std::string CommandLine::usage() {
    return "usage: tavna [--module PATH] [FILE...]\n"
           "  --module PATH  the module library to load (else $TAVNA_MODULE, else\n"
           "                 modules/libtavna-network-analyzer.so beside tavna)\n"
           "  FILE...        capture files the module opens one after another\n";
}

} // namespace TavHost
