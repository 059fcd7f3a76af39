// gzip-compressed captures: inflated once into a cached copy with progress and
// cancel, frames read again by offset from the copy, the copy removed with the
// file, and damaged compressed data told apart from a damaged capture.
#include "tests/platform/parser/CaptureBytes.h"

#include "platform/parser/ParseError.h"
#include "platform/parser/SvParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <vector>
#include <zlib.h>

using namespace TavIec61850Parser;
using namespace TavTest;
using ::testing::HasSubstr;

namespace {

std::string cacheFolder() {
    return tempDir() + "/cache/tavna";
}

std::size_t copiesCached() {
    std::error_code ec;
    if (!std::filesystem::exists(cacheFolder(), ec))
        return 0;
    std::size_t n = 0;
    for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator(cacheFolder()))
        ++n;
    return n;
}

// A compressed capture of about 4 MB, big enough for several progress steps.
std::string compressedCapture(const std::string& format) {
    const std::string path = tempDir() + "/big." + format + ".gz";
    if (!std::filesystem::exists(path))
        runGenerator({path, "--format", format, "--gzip", "--sv", "2", "--duration", "2"});
    return path;
}

class CompressedCapture : public ::testing::TestWithParam<std::string> {
protected:
    static void SetUpTestSuite() { ::setenv("XDG_CACHE_HOME", (tempDir() + "/cache").c_str(), 1); }
    void TearDown() override { PcapParser::forgetFile(compressedCapture(GetParam())); }
};

} // namespace

TEST_P(CompressedCapture, readsLikeThePlainFileAndFramesComeBackFromTheCopy) {
    const std::string path = compressedCapture(GetParam());
    std::vector<double> progress;
    Db db;
    FileStats stats;
    const std::atomic<bool> cancel{false};
    PcapParser::parseFile(
        path, db, {}, cancel, [&](double f) { progress.push_back(f); }, stats);
    EXPECT_TRUE(stats.compressed);
    EXPECT_EQ(stats.svFrames, 2u * 8000);
    ASSERT_GT(progress.size(), 4u);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_EQ(progress.back(), 1.0);
    EXPECT_EQ(copiesCached(), 1u);

    const PackageFile& f = *db.svProto.svs.begin()->files.begin();
    const Package& last = f.packages.back();
    EXPECT_EQ(SvParser::parseASDUFromFile(path, last.offset).size(), 1u);
    // A cleaned cache folder costs one more inflation, not the frames.
    std::filesystem::remove_all(cacheFolder());
    EXPECT_EQ(SvParser::parseASDUFromFile(path, f.packages.front().offset).size(), 1u);

    PcapParser::forgetFile(path);
    EXPECT_EQ(copiesCached(), 0u);
}

TEST_P(CompressedCapture, cancelWhileInflatingLeavesNothing) {
    const std::string path = compressedCapture(GetParam());
    std::atomic<bool> cancel{false};
    Db db;
    PcapParser::parseFile(path, db, {}, cancel, [&](double f) {
        if (f > 0.1)
            cancel = true;
    });
    EXPECT_EQ(db.svProto.getSvCount(), 0u);
    EXPECT_EQ(copiesCached(), 0u);
}

TEST_P(CompressedCapture, damagedCompressedDataIsAFileError) {
    const std::string whole = readFile(compressedCapture(GetParam()));
    struct Damage {
        const char* name;
        Bytes bytes;
        const char* reason;
    };
    Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(whole.size() / 2));
    Bytes garbled(whole.begin(), whole.end());
    for (std::size_t i = 100; i < 200; ++i)
        garbled[i] ^= 0x5A;
    for (const Damage& d : {Damage{"cut.gz", cut, "cut short"},
                            Damage{"garbled.gz", garbled, "corrupt compressed data"}}) {
        const std::string path = writeTemp(GetParam() + d.name, d.bytes);
        Db db;
        try {
            parse(path, db);
            ADD_FAILURE() << d.name << " parsed";
        } catch (const ParseError& e) {
            EXPECT_THAT(e.what(), HasSubstr(path)) << d.name;
            EXPECT_THAT(e.what(), HasSubstr(d.reason)) << d.name;
        }
        EXPECT_EQ(copiesCached(), 0u) << d.name;
    }
}

// A few hundred kilobytes that inflate to gigabytes of nothing are refused
// long before they fill the disk, and leave nothing in the cache.
TEST(CompressedBomb, isRefusedBeforeItFillsTheDisk) {
    const std::string path = tempDir() + "/bomb.pcap.gz";
    gzFile out = gzopen(path.c_str(), "wb9");
    ASSERT_NE(out, nullptr);
    const std::vector<char> zeros(1 << 20, 0);
    for (int mb = 0; mb < 200; ++mb)
        ASSERT_EQ(gzwrite(out, zeros.data(), static_cast<unsigned>(zeros.size())),
                  static_cast<int>(zeros.size()));
    ASSERT_EQ(gzclose(out), Z_OK);
    ASSERT_LT(std::filesystem::file_size(path), 1u << 20);
    Db db;
    try {
        parse(path, db);
        ADD_FAILURE() << "the bomb parsed";
    } catch (const ParseError& e) {
        EXPECT_THAT(e.what(), HasSubstr(path));
        EXPECT_THAT(e.what(), HasSubstr("thousandfold"));
    }
    EXPECT_EQ(copiesCached(), 0u);
}

INSTANTIATE_TEST_SUITE_P(BothContainers, CompressedCapture, ::testing::Values("pcap", "pcapng"));
