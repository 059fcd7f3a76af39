#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace TavTest {

namespace {

struct TempDirOwner {
    std::filesystem::path path;
    TempDirOwner() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "tavna-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("cannot create a temporary directory");
        path = pattern;
    }
    ~TempDirOwner() {
        std::error_code ec;
        std::filesystem::remove_all(path, ec);
    }
};

} // namespace

std::string shellQuote(const std::string& s) {
    std::string q = "'";
    for (char c : s)
        q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

std::string sharedCapture(const std::string& name) {
    const char* dir = std::getenv("TAVNA_CAPTURES");
    std::filesystem::path base = dir ? dir : "../shared/captures";
    return (base / name).string();
}

std::string tempDir() {
    static TempDirOwner owner;
    return owner.path.string();
}

std::string toolPath(const char* envName) {
    const char* p = std::getenv(envName);
    if (p == nullptr || *p == '\0')
        throw std::runtime_error(std::string("environment variable not set: ") + envName);
    return p;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> readLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

int runCommand(const std::vector<std::string>& argv, std::string& out, std::string* err) {
    static int serial = 0;
    const std::string errFile = tempDir() + "/stderr-" + std::to_string(++serial);
    std::string cmd;
    for (const auto& a : argv)
        cmd += shellQuote(a) + " ";
    cmd += "2>" + (err != nullptr ? shellQuote(errFile) : std::string("/dev/null"));
    out.clear();
    FILE* pipe = popen(cmd.c_str(), "r");
    if (pipe == nullptr)
        return -1;
    std::array<char, 65536> buf{};
    size_t n = 0;
    while ((n = fread(buf.data(), 1, buf.size(), pipe)) > 0)
        out.append(buf.data(), n);
    int status = pclose(pipe);
    if (err != nullptr)
        *err = readFile(errFile);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void runGenerator(const std::vector<std::string>& args) {
    std::vector<std::string> argv{toolPath("TAVNA_GEN")};
    argv.insert(argv.end(), args.begin(), args.end());
    std::string out;
    int rc = runCommand(argv, out);
    ASSERT_EQ(rc, 0) << "capture writer failed: " << out;
}

void flushToDisk(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY);
    ASSERT_GE(fd, 0) << "cannot open " << path;
    EXPECT_EQ(::fsync(fd), 0) << "cannot flush " << path;
    ::close(fd);
}

std::string generated(const std::string& name, const std::vector<std::string>& options) {
    const std::string path = tempDir() + "/" + name + ".pcap";
    if (!std::filesystem::exists(path)) {
        std::vector<std::string> args{path};
        args.insert(args.end(), options.begin(), options.end());
        runGenerator(args);
    }
    return path;
}

} // namespace TavTest
