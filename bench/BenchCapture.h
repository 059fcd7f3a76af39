#pragma once

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <unistd.h>

// Writes the benchmark's capture with tavna-gen unless an earlier run left it;
// a run stopped half-way leaves only the ".part" file, never a short capture.
// The capture is flushed before it is measured: a gigabyte still being written
// back would make every fsync on the machine, the toolkit's included, wait.
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
    const int fd = ::open(part.c_str(), O_RDONLY);
    if (fd < 0 || ::fsync(fd) != 0) {
        std::perror(part.c_str());
        std::exit(1);
    }
    ::close(fd);
    std::filesystem::rename(part, path);
}
