// Raw samples of any range come back from the stored integers within half a
// step, and the integers stay inside the data file's width.
#include "comtrade/ChannelScale.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using TavComtrade::ChannelScale;

struct ScaleCase {
    const char* name;
    std::int64_t min, max;
    float ratio;
    std::int64_t limit;
    std::int64_t divisor; // expected
};

std::ostream& operator<<(std::ostream& os, const ScaleCase& c) {
    return os << c.name;
}

class Scales : public ::testing::TestWithParam<ScaleCase> {};

TEST_P(Scales, KeepEveryValueWithinHalfAStep) {
    const auto& c = GetParam();
    const auto s = ChannelScale::choose(c.min, c.max, c.ratio, c.limit);
    EXPECT_EQ(s.divisor, c.divisor);
    EXPECT_EQ(s.storedMin, s.store(c.min));
    EXPECT_EQ(s.storedMax, s.store(c.max));
    const std::int64_t step = std::max<std::int64_t>(1, (c.max - c.min) / 997);
    for (std::int64_t raw = c.min; raw <= c.max; raw += step) {
        const std::int64_t stored = s.store(raw);
        ASSERT_LE(std::llabs(stored), c.limit) << raw;
        const double shown = static_cast<double>(static_cast<float>(raw) * c.ratio);
        ASSERT_NEAR(s.a * static_cast<double>(stored) + s.b, shown,
                    s.a / 2 + 1e-6 * std::abs(shown))
            << raw;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, Scales,
    ::testing::Values(ScaleCase{"fitsAsItIs", -32767, 32767, 0.001f, 32767, 1},
                      ScaleCase{"oneSidedShifted", 0, 60000, 0.001f, 32767, 1},
                      ScaleCase{"wideDivided", -100000, 100000, 0.001f, 32767, 4},
                      ScaleCase{"farFromZero", 5'000'000, 5'000'100, 0.01f, 32767, 1},
                      ScaleCase{"wholeInt32Narrow", -2147483647, 2147483647, 0.01f, 32767, 65539},
                      ScaleCase{"wholeInt32Wide", -2147483647, 2147483647, 0.001f, 2147483647, 1}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Scales, AChannelWithoutValuesStoresNothing) {
    const auto s = ChannelScale::choose(1, 0, 0.01f, 32767);
    EXPECT_EQ(s.a, 0.01);
    EXPECT_EQ(s.storedMin, 0);
    EXPECT_EQ(s.storedMax, 0);
}

} // namespace
