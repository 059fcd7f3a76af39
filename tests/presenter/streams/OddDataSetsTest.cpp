// Streams whose data sets are not whole 8-byte values, listed and drawn like
// any other, from a plain file and from a gzip-compressed Linux cooked capture.
#include "presenter/OscillographPresenter.h"
#include "presenter/PackageListPresenter.h"
#include "tests/presenter/streams/ScopeFixture.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace TavNA;
using TavTest::checkBox;
using TavTest::generated;
using TavTest::OscillographDrawing;

// The generator's first current: 100 A peak at 50 Hz in mA, 4000 samples a second.
float rawCurrentA(long n) {
    return static_cast<float>(
        std::lround(100.0 * 1000.0 * std::sin(2.0 * M_PI * 50.0 * n / 4000.0)));
}

// Data sets of 12 bytes an ASDU, eight ASDUs of distinct svIDs a frame: one
// whole value each, listed with its box and drawn, from a plain file and from
// a gzip-compressed Linux cooked capture alike.
class OddDataSets : public OscillographDrawing,
                    public testing::WithParamInterface<std::vector<std::string>> {
protected:
    static void SetUpTestSuite() {
        ::setenv("XDG_CACHE_HOME", (TavTest::tempDir() + "/cache").c_str(), 1);
    }
};

TEST_P(OddDataSets, TheOneValueIsListedAndDrawn) {
    std::vector<std::string> options{"--sv",
                                     "1",
                                     "--asdus",
                                     "8",
                                     "--duration",
                                     "0.2",
                                     "--seqdata-bytes",
                                     "12",
                                     "--distinct-svids"};
    options.insert(options.end(), GetParam().begin(), GetParam().end());
    std::string name = "sv1-seq12";
    for (const auto& o : GetParam())
        name += o;
    const std::string path = generated(name, options);
    loaded.open(path);
    ASSERT_EQ(list.getSvStreams().size(), 1u);
    auto& stream = *list.getSvStreams().at(0);
    stream.getViewObj()->nameButton().clicked();
    ASSERT_EQ(stream.getChannelsPresenter().getEntries().size(), 1u);
    EXPECT_TRUE(checkBox(stream, 0).get_visible());

    SvChannel& value = tick(stream, 0);
    const auto& points = value.getSerie().points;
    // A frame per sample, the first 100 ms on show.
    ASSERT_EQ(points.size(), 400u);
    for (long n : {0L, 1L, 399L}) {
        EXPECT_NEAR(points[n].x, n / 4000.0, 1e-6) << n;
        EXPECT_FLOAT_EQ(points[n].y, rawCurrentA(n) * value.getTransformRatio()) << n;
    }

    // Closing the file's entry takes a compressed file's inflated copy with it.
    const std::string cache = TavTest::tempDir() + "/cache/tavna";
    const auto cached = [&] {
        std::error_code ec;
        return std::filesystem::exists(cache, ec) && !std::filesystem::is_empty(cache, ec);
    };
    const bool compressed =
        std::find(GetParam().begin(), GetParam().end(), "--gzip") != GetParam().end();
    EXPECT_EQ(cached(), compressed);
    loaded.model.getFileManagerModel().remove(path);
    TavTest::pumpPending();
    EXPECT_FALSE(cached());
}

INSTANTIATE_TEST_SUITE_P(Captures, OddDataSets,
                         testing::Values(std::vector<std::string>{},
                                         std::vector<std::string>{"--link", "sll2", "--gzip"}));

} // namespace
