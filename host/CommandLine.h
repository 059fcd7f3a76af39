#pragma once

#include <string>
#include <vector>

namespace TavHost {

// What the host was asked to do.
struct CommandLine {
    std::string modulePath; // from --module, else $TAVNA_MODULE, else beside the executable
    std::vector<std::string> files;
    std::string error; // not empty: the arguments make no sense
    bool help = false;

    static CommandLine parse(int argc, char** argv);
    static std::string usage();
};

// `<folder of the running executable>/modules/libtavna-network-analyzer.so`.
std::string defaultModulePath(const char* argv0);

} // namespace TavHost
