#include "platform/view/oscillograph/TimeAxis.h"
#include "platform/view/oscillograph/ValueAxis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace TavView {
namespace {

// Seven pixels a character: close enough to the real font for spacing rules.
double charWidth(const std::string& s) {
    return 7.0 * static_cast<double>(s.size());
}

bool isRoundStep(double step) {
    const double mantissa = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    for (double m : {1.0, 2.0, 5.0}) {
        if (std::abs(mantissa - m) < 1e-6)
            return true;
    }
    return false;
}

TEST(TimeAxis, PicksRoundStepsWhoseLabelsNeverOverlapOrRepeat) {
    for (double span : {2e-6, 7.3e-5, 1e-3, 0.0123, 0.1, 0.75, 3.0, 47.0, 1800.0}) {
        for (double start : {0.0, 0.37, 1234.5678}) {
            for (double pixels : {150.0, 600.0, 1856.0}) {
                SCOPED_TRACE(testing::Message() << span << " from " << start << " on " << pixels);
                const TickSet set = TimeAxis::choose(start, start + span, pixels, charWidth);
                ASSERT_FALSE(set.ticks.empty());
                EXPECT_TRUE(isRoundStep(set.step)) << set.step;
                std::set<std::string> labels;
                for (std::size_t i = 0; i < set.ticks.size(); ++i) {
                    EXPECT_GE(set.ticks[i].value, start - 1e-12);
                    EXPECT_LE(set.ticks[i].value, start + span + 1e-12);
                    labels.insert(set.ticks[i].label);
                    if (i == 0)
                        continue;
                    const double gap =
                        (set.ticks[i].value - set.ticks[i - 1].value) / span * pixels;
                    const double halves =
                        (charWidth(set.ticks[i].label) + charWidth(set.ticks[i - 1].label)) / 2.0;
                    EXPECT_GT(gap, halves) << set.ticks[i - 1].label << " / " << set.ticks[i].label;
                }
                EXPECT_EQ(labels.size(), set.ticks.size()) << "two ticks read the same";
            }
        }
    }
}

TEST(TimeAxis, UnitFollowsTheZoomLevel) {
    const TickSet ms = TimeAxis::choose(0.0, 0.1, 1000.0, charWidth);
    ASSERT_EQ(ms.ticks.size(), 11u);
    EXPECT_EQ(ms.ticks[0].label, "0 ms");
    EXPECT_EQ(ms.ticks[1].label, "10 ms");
    EXPECT_EQ(ms.ticks[10].label, "100 ms");

    const TickSet us = TimeAxis::choose(0.0, 50e-6, 1000.0, charWidth);
    ASSERT_FALSE(us.ticks.empty());
    EXPECT_EQ(us.ticks[1].label, "5 \u00b5s");

    const TickSet s = TimeAxis::choose(0.0, 60.0, 1000.0, charWidth);
    ASSERT_GT(s.ticks.size(), 1u);
    EXPECT_EQ(s.ticks[1].label, "5 s");

    EXPECT_EQ(TimeAxis::label(0.0025, 0.0005), "2.5 ms");
    EXPECT_EQ(TimeAxis::label(1.5, 0.5), "1.5 s");
    EXPECT_EQ(TimeAxis::label(0.00015, 0.00005), "150 \u00b5s");
}

TEST(TimeAxis, EmptyOrInvertedWindowHasNoTicks) {
    EXPECT_TRUE(TimeAxis::choose(1.0, 1.0, 500.0, charWidth).ticks.empty());
    EXPECT_TRUE(TimeAxis::choose(2.0, 1.0, 500.0, charWidth).ticks.empty());
    EXPECT_TRUE(TimeAxis::choose(0.0, 1.0, 0.0, charWidth).ticks.empty());
}

TEST(ValueAxis, UsesEngineeringPrefixesAndKeepsTicksApart) {
    const TickSet kilo = ValueAxis::choose(-2600.0, 2600.0, 400.0, 11.0);
    ASSERT_FALSE(kilo.ticks.empty());
    EXPECT_TRUE(isRoundStep(kilo.step));
    EXPECT_GE(kilo.step / 5200.0 * 400.0, 22.0);
    std::set<std::string> labels;
    for (const Tick& t : kilo.ticks)
        labels.insert(t.label);
    EXPECT_EQ(labels.size(), kilo.ticks.size());
    EXPECT_TRUE(labels.count("0"));
    EXPECT_TRUE(labels.count("1k") || labels.count("1.0k")) << kilo.ticks.back().label;

    const TickSet mega = ValueAxis::choose(0.0, 3.2e6, 300.0, 11.0);
    ASSERT_FALSE(mega.ticks.empty());
    EXPECT_EQ(mega.ticks.back().label.back(), 'M');

    const TickSet small = ValueAxis::choose(-0.02, 0.03, 300.0, 11.0);
    EXPECT_EQ(small.ticks.front().label, "-0.020"); // step 0.005 needs three digits

    EXPECT_EQ(ValueAxis::readout(-1234.5), "-1.23k");
    EXPECT_EQ(ValueAxis::readout(0.5), "0.500");
}

} // namespace
} // namespace TavView
