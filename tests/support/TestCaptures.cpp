#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>

namespace TavTest {

namespace {

std::string shellQuote(const std::string& s) {
    std::string q = "'";
    for (char c : s) {
        if (c == '\'')
            q += "'\\''";
        else
            q += c;
    }
    return q + "'";
}

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

int runCommand(const std::vector<std::string>& argv, std::string& out) {
    std::string cmd;
    for (const auto& a : argv)
        cmd += shellQuote(a) + " ";
    cmd += "2>/dev/null";
    out.clear();
    FILE* pipe = popen(cmd.c_str(), "r");
    if (pipe == nullptr)
        return -1;
    std::array<char, 65536> buf{};
    size_t n = 0;
    while ((n = fread(buf.data(), 1, buf.size(), pipe)) > 0)
        out.append(buf.data(), n);
    int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void runGenerator(const std::vector<std::string>& args) {
    std::vector<std::string> argv{toolPath("TAVNA_GEN")};
    argv.insert(argv.end(), args.begin(), args.end());
    std::string out;
    int rc = runCommand(argv, out);
    ASSERT_EQ(rc, 0) << "capture writer failed: " << out;
}

} // namespace TavTest
