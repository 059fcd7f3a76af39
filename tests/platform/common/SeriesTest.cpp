#include "platform/common/Series.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace {

struct Range {
    float minX, maxX, minY, maxY;
};

Range rangeOf(const Tav::Series& s) {
    Range r{};
    s.getRangeXY(r.minX, r.maxX, r.minY, r.maxY);
    return r;
}

TEST(Series, RangesSpanThePointsWhateverTheirOrder) {
    Tav::Series s;
    s.points = {{0.5f, -3.0f}, {0.25f, 7.5f}, {2.0f, 0.0f}, {1.0f, -3.5f}};
    const Range r = rangeOf(s);
    EXPECT_FLOAT_EQ(r.minX, 0.25f);
    EXPECT_FLOAT_EQ(r.maxX, 2.0f);
    EXPECT_FLOAT_EQ(r.minY, -3.5f);
    EXPECT_FLOAT_EQ(r.maxY, 7.5f);
    float lo = 0, hi = 0;
    s.getRangeY(lo, hi);
    EXPECT_FLOAT_EQ(lo, -3.5f);
    EXPECT_FLOAT_EQ(hi, 7.5f);
}

TEST(Series, AnEmptySeriesGivesZeroRanges) {
    Tav::Series s;
    const Range r = rangeOf(s);
    EXPECT_EQ(r.minX, 0.0f);
    EXPECT_EQ(r.maxX, 0.0f);
    EXPECT_EQ(r.minY, 0.0f);
    EXPECT_EQ(r.maxY, 0.0f);
}

TEST(Series, NanCoordinatesStayOutOfTheirAxis) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    Tav::Series s;
    s.points = {{nan, 4.0f}, {1.0f, nan}, {3.0f, -1.0f}};
    const Range r = rangeOf(s);
    EXPECT_FLOAT_EQ(r.minX, 1.0f);
    EXPECT_FLOAT_EQ(r.maxX, 3.0f);
    EXPECT_FLOAT_EQ(r.minY, -1.0f);
    EXPECT_FLOAT_EQ(r.maxY, 4.0f);

    // Nothing but NaN on an axis is the same as no points there.
    s.points = {{nan, nan}};
    const Range empty = rangeOf(s);
    EXPECT_EQ(empty.minX, 0.0f);
    EXPECT_EQ(empty.maxY, 0.0f);
}

TEST(Series, ColourBytesInMemoryAreRedGreenBlueAlpha) {
    Tav::Series s;
    const unsigned char bytes[4] = {0xFF, 0x80, 0x00, 0x40};
    std::memcpy(&s.color, bytes, 4);
    EXPECT_DOUBLE_EQ(s.red(), 1.0);
    EXPECT_DOUBLE_EQ(s.green(), 128 / 255.0);
    EXPECT_DOUBLE_EQ(s.blue(), 0.0);
    EXPECT_DOUBLE_EQ(s.alpha(), 64 / 255.0);
    EXPECT_EQ(s.getFragmentableColor(), s.color);
}

} // namespace
