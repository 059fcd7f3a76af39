// The package a user installs: built by CPack from this build, unpacked, and
// run as the installed program runs, finding its module and data files from
// where it lies, not from the build's folders.
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

std::string run(const std::vector<std::string>& argv, int& code) {
    std::string out, err;
    code = TavTest::runCommand(argv, out, &err);
    return out + err;
}

TEST(Package, UnpacksValidatesAndOpensACaptureFromWhereItIsInstalled) {
    const std::string dir = TavTest::tempDir() + "/package";
    int code = 0;
    std::string said = run({"sh", "-c",
                            "cd " + TavTest::shellQuote(TAVNA_BINARY_DIR) + " && cpack -G DEB -B " +
                                TavTest::shellQuote(dir)},
                           code);
    ASSERT_EQ(code, 0) << said;
    fs::path deb;
    for (const auto& entry : fs::directory_iterator(dir))
        if (entry.path().extension() == ".deb")
            deb = entry.path();
    ASSERT_FALSE(deb.empty()) << said;

    const std::string depends = run({"dpkg-deb", "-f", deb.string(), "Depends"}, code);
    for (const char* library : {"libgtkmm-3.0-1v5", "libfftw3-double3", "zlib1g"})
        EXPECT_NE(depends.find(library), std::string::npos) << library << " in " << depends;

    const std::string root = dir + "/root";
    said = run({"dpkg-deb", "-x", deb.string(), root}, code);
    ASSERT_EQ(code, 0) << said;
    said = run({"desktop-file-validate", root + "/usr/share/applications/tavna.desktop"}, code);
    EXPECT_EQ(code, 0) << said;
    EXPECT_TRUE(fs::exists(root + "/usr/share/icons/hicolor/256x256/apps/tavna.png"));

    // Run from a folder that holds none of its files; killed once it has had
    // time to open the capture, which its log then tells.
    const std::string capture = TavTest::generated("packaged", {"--sv", "1", "--duration", "0.2"});
    const std::string state = dir + "/state";
    said = run({"sh", "-c",
                "cd / && XDG_STATE_HOME=" + TavTest::shellQuote(state) +
                    " timeout 15 xvfb-run -a " + TavTest::shellQuote(root + "/usr/bin/tavna") +
                    " " + TavTest::shellQuote(capture) + "; true"},
               code);
    const std::string log = TavTest::readFile(state + "/tavna/tavna.log");
    EXPECT_NE(log.find("Модуль открыт"), std::string::npos) << log << said;
    EXPECT_NE(log.find("Файл открыт: " + capture), std::string::npos) << log << said;
}

} // namespace
