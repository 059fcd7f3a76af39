#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

// Writes the benchmark's capture with tavna-gen unless an earlier run left it;
// a run stopped half-way leaves only the ".part" file, never a short capture.
inline void writeCaptureOnce(const std::string& path, const std::string& generatorArguments) {
    if (std::filesystem::exists(path))
        return;
    std::printf("writing %s with tavna-gen (once)\n", path.c_str());
    const std::string part = path + ".part";
    const std::string command = std::string("'") + TAVNA_GEN_PATH + "' '" + part + "' " +
                                generatorArguments + " > /dev/null";
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "tavna-gen failed\n");
        std::exit(1);
    }
    std::filesystem::rename(part, path);
}
