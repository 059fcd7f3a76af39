#include "platform/view/oscillograph/CoordinateMapper.h"
#include "platform/view/oscillograph/Decimator.h"
#include "platform/view/oscillograph/PlotLayout.h"
#include "platform/view/oscillograph/TimeAxis.h"
#include "platform/view/oscillograph/TimeWindow.h"
#include "platform/view/oscillograph/ValueAxis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace TavView {
namespace {

// Seven pixels a character: close enough to the real font for spacing rules.
double charWidth(const std::string& s) {
    return 7.0 * static_cast<double>(s.size());
}

TEST(CoordinateMapper, MapsTimeAndValueBothWays) {
    // Plot from x 100 to 500 and y 50 to 250; values grow upwards.
    const CoordinateMapper m(10.0, 12.0, 100.0, 400.0, -1.0, 3.0, 50.0, 200.0);
    EXPECT_DOUBLE_EQ(m.timeToX(10.0), 100.0);
    EXPECT_DOUBLE_EQ(m.timeToX(12.0), 500.0);
    EXPECT_DOUBLE_EQ(m.valueToY(3.0), 50.0);
    EXPECT_DOUBLE_EQ(m.valueToY(-1.0), 250.0);
    for (double t : {9.0, 10.25, 11.999, 13.5})
        EXPECT_NEAR(m.xToTime(m.timeToX(t)), t, 1e-12);
    for (double y : {0.0, 77.7, 250.0, 400.0})
        EXPECT_NEAR(m.valueToY(m.yToValue(y)), y, 1e-9);

    // An empty value span must not divide by zero.
    const AxisMap flat(5.0, 5.0, 200.0, 0.0);
    EXPECT_TRUE(std::isfinite(flat.toPixel(6.0)));
    EXPECT_DOUBLE_EQ(flat.toPixel(5.0), 200.0);
}

// Clamping at the ends through the widget is checked in its own tests.
TEST(TimeWindow, ZoomKeepsItsCentreTakesReversedEndsAndStopsAtTheMinimumWidth) {
    TimeWindow w;
    w.setDuration(10.0);
    w.setRange(2.0, 4.0);
    w.zoomAround(3.0, 0.5);
    EXPECT_DOUBLE_EQ(w.from(), 2.5);
    EXPECT_DOUBLE_EQ(w.to(), 3.5);
    w.panBy(-100.0);
    EXPECT_DOUBLE_EQ(w.from(), 0.0);
    EXPECT_DOUBLE_EQ(w.width(), 1.0);

    w.setRange(9.0, 7.0);
    EXPECT_DOUBLE_EQ(w.from(), 7.0);
    EXPECT_DOUBLE_EQ(w.to(), 9.0);
    for (int i = 0; i < 200; ++i)
        w.zoomAround(8.0, 0.5);
    EXPECT_NEAR(w.width(), TimeWindow::MinWidth, 1e-15);
    EXPECT_LE(w.from(), 8.0);
    EXPECT_GE(w.to(), 8.0);
}

TEST(TimeWindow, DurationChangesKeepTheWindowValid) {
    TimeWindow w;
    w.setRange(1.0, 2.0);
    EXPECT_EQ(w.width(), 0.0) << "nothing to show before there is a duration";
    w.setDuration(4.0);
    EXPECT_DOUBLE_EQ(w.to(), 4.0) << "an empty window opens onto everything";
    w.setDuration(8.0);
    EXPECT_DOUBLE_EQ(w.to(), 8.0) << "a window showing everything follows a growing recording";
    w.setRange(6.0, 7.0);
    w.setDuration(3.0);
    EXPECT_DOUBLE_EQ(w.from(), 2.0);
    EXPECT_DOUBLE_EQ(w.to(), 3.0);
    w.setDuration(0.0);
    EXPECT_EQ(w.from(), 0.0);
    EXPECT_EQ(w.to(), 0.0);
    w.panBy(1.0);
    w.zoomAround(0.0, 0.5);
    EXPECT_EQ(w.to(), 0.0) << "with duration 0 there is nothing to scroll";
}

std::vector<Tav::PointF> samples(std::size_t n, double period) {
    std::vector<Tav::PointF> points(n);
    for (std::size_t i = 0; i < n; ++i)
        points[i] = {static_cast<float>(i * period), static_cast<float>(std::sin(i * 0.01))};
    return points;
}

TEST(Decimator, VisibleSpanAddsOnePointEachSide) {
    const auto points = samples(100, 1.0); // x = 0..99
    const Decimator::Span s = Decimator::visible(points, 10.5, 20.0);
    EXPECT_EQ(s.first, 10u);
    EXPECT_EQ(s.last, 22u); // 11..20 inside, 10 and 21 around
    const Decimator::Span all = Decimator::visible(points, -5.0, 500.0);
    EXPECT_EQ(all.first, 0u);
    EXPECT_EQ(all.last, 100u);
    const Decimator::Span after = Decimator::visible(points, 200.0, 300.0);
    EXPECT_EQ(after.last - after.first, 1u) << "only the last point leads into the window";
}

TEST(Decimator, OneSampleSpikeSurvivesAndOutputStaysSmall) {
    auto points = samples(200000, 1e-5);
    points[123457].y = 1000.0f;
    points[4321].y = -1000.0f;
    const AxisMap time(0.0, 2.0, 0.0, 500.0);
    std::vector<ColumnPoint> out;
    Decimator::decimate(points, {0, points.size()}, time, 2.0, out);
    EXPECT_LE(out.size(), 4u * 501u);
    const auto [lo, hi] =
        std::minmax_element(out.begin(), out.end(),
                            [](const ColumnPoint& a, const ColumnPoint& b) { return a.y < b.y; });
    EXPECT_FLOAT_EQ(hi->y, 2000.0f) << "gain applies";
    EXPECT_FLOAT_EQ(lo->y, -2000.0f);
    EXPECT_NEAR(hi->x, time.toPixel(123457 * 1e-5), 1e-3);
    EXPECT_TRUE(
        std::is_sorted(out.begin(), out.end(),
                       [](const ColumnPoint& a, const ColumnPoint& b) { return a.x < b.x; }));
}

TEST(Decimator, SparsePointsPassThroughAndNaNIsLeftOut) {
    std::vector<Tav::PointF> points{{0.0f, 1.0f}, {0.5f, NAN}, {1.0f, 3.0f}, {1.001f, 4.0f}};
    const AxisMap time(0.0, 1.0, 0.0, 100.0);
    std::vector<ColumnPoint> out;
    Decimator::decimate(points, {0, points.size()}, time, 1.0, out);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_FLOAT_EQ(out[0].x, 0.0f);
    EXPECT_FLOAT_EQ(out[1].y, 3.0f);
    EXPECT_FLOAT_EQ(out[2].y, 4.0f);
}

struct LayoutFixture : testing::Test {
    Tav::Series voltage, current, breaker, alarm;
    std::vector<const Tav::Series*> all;

    LayoutFixture() {
        voltage.description = "Ua";
        voltage.points = {{0.0f, -10.0f}, {0.5f, 10.0f}, {1.0f, 0.0f}, {5.0f, 900.0f}};
        current.description = "Ia";
        current.gain = 2.0f;
        current.points = {{0.0f, 1.0f}, {1.0f, 15.0f}};
        breaker.kind = Tav::Series::Discrete;
        breaker.description = "XCBR";
        breaker.ordinal = 3;
        breaker.points = {{0.0f, 0.0f}, {0.5f, 1.0f}, {1.0f, 1.0f}};
        alarm = breaker;
        alarm.description = "Alarm";
        alarm.ordinal = 0;
        all = {&voltage, &current, &breaker, &alarm};
    }

    PlotLayout compute(std::optional<std::pair<double, double>> values = std::nullopt,
                       double from = 0.0, double to = 1.0) {
        PlotLayout layout;
        PlotLayout::Input in;
        in.width = 800;
        in.height = 500;
        in.from = from;
        in.to = to;
        in.series = &all;
        in.valueRange = values;
        in.measure = charWidth;
        layout.compute(in);
        return layout;
    }
};

TEST_F(LayoutFixture, DiscreteSeriesGetOneLaneEachUnderTheAnalogueArea) {
    const PlotLayout layout = compute();
    EXPECT_EQ(layout.plot.width, PlotLayout::plotWidthFor(800));
    ASSERT_EQ(layout.lanes.size(), 2u);
    EXPECT_EQ(layout.lanes[0].label, "Alarm"); // ordered by ordinal
    EXPECT_EQ(layout.lanes[1].label, "XCBR");
    EXPECT_DOUBLE_EQ(layout.lanes[0].rect.y, layout.analog.bottom());
    EXPECT_DOUBLE_EQ(layout.lanes[1].rect.bottom(), layout.plot.bottom());
    for (const Curve& c : layout.curves) {
        const Rect& box =
            c.discrete ? layout.lanes[c.series == &alarm ? 0 : 1].rect : layout.analog;
        for (const ColumnPoint& p : c.pixels) {
            if (p.x < layout.plot.x || p.x > layout.plot.right())
                continue; // the points that lead into the window may lie anywhere
            EXPECT_GE(p.y, box.y - 0.01) << c.series->description;
            EXPECT_LE(p.y, box.bottom() + 0.01) << c.series->description;
        }
    }
}

TEST_F(LayoutFixture, ValueAxisFitsVisibleDataWithGainUnlessZoomed) {
    const PlotLayout fitted = compute();
    // Visible analogue values: -10..10 and, at gain 2, 2..30; the point at 5 s is not visible.
    EXPECT_LT(fitted.valueLo, -10.0);
    EXPECT_GT(fitted.valueLo, -13.0);
    EXPECT_GT(fitted.valueHi, 30.0);
    EXPECT_LT(fitted.valueHi, 33.0);

    const PlotLayout zoomed = compute(std::make_pair(-1.0, 1.0));
    EXPECT_EQ(zoomed.valueLo, -1.0);
    EXPECT_EQ(zoomed.valueHi, 1.0);
    EXPECT_DOUBLE_EQ(zoomed.mapper.valueToY(1.0), zoomed.analog.y);
}

TEST_F(LayoutFixture, UnsortedPointsAreDrawnInTimeOrder) {
    voltage.points = {{0.6f, 1.0f}, {0.7f, 2.0f}, {0.1f, 3.0f}, {0.2f, 4.0f}};
    const PlotLayout layout = compute();
    const Curve& c = layout.curves[0];
    ASSERT_EQ(c.pixels.size(), 4u);
    EXPECT_TRUE(
        std::is_sorted(c.pixels.begin(), c.pixels.end(),
                       [](const ColumnPoint& a, const ColumnPoint& b) { return a.x < b.x; }));
    EXPECT_EQ(PlotLayout::valueAt(*c.points, 0.15), 3.0f);
    EXPECT_EQ(PlotLayout::valueAt(*c.points, 0.65), 1.0f);
    EXPECT_EQ(PlotLayout::valueAt(*c.points, 0.05), std::nullopt);
}

TEST_F(LayoutFixture, PointsCountFromTheirSeriesOriginAndAnEnvelopeIsMarked) {
    // Two hours in, samples 69.4 us apart: 32-bit x from the axis' zero could
    // not tell them apart, x from the series' origin can.
    const double origin = 7199.5, step = 1.0 / 14400;
    voltage.origin = origin;
    voltage.points.clear();
    for (int n = 0; n < 29; ++n)
        voltage.points.push_back({static_cast<float>(n * step), static_cast<float>(n)});
    all = {&voltage};
    PlotLayout layout = compute(std::nullopt, origin, origin + 0.002);
    EXPECT_FALSE(layout.envelope);
    const Curve& c = layout.curves[0];
    ASSERT_EQ(c.pixels.size(), 29u);
    for (int n = 0; n < 29; ++n)
        EXPECT_NEAR(c.pixels[n].x, layout.mapper.timeToX(origin + n * step), 1e-3) << n;
    // The readout finds the sample in force at a time on the widget's axis.
    EXPECT_EQ(PlotLayout::valueAt(*c.points, origin + 10.5 * step - c.origin), 10.0f);

    voltage.envelope = true;
    layout = compute(std::nullopt, origin, origin + 0.002);
    EXPECT_TRUE(layout.envelope);
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
    EXPECT_EQ(ms.ticks[10].label, "100 ms");
    for (const auto& [span, second] :
         {std::pair{0.1, "10 ms"}, std::pair{50e-6, "5 \u00b5s"}, std::pair{60.0, "5 s"}}) {
        const TickSet set = TimeAxis::choose(0.0, span, 1000.0, charWidth);
        ASSERT_GT(set.ticks.size(), 1u) << span;
        EXPECT_EQ(set.ticks[1].label, second);
    }
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

    // A known unit comes with its SI prefix, on the ticks and in the readout.
    EXPECT_EQ(ValueAxis::readout(-1234.5, "А"), "-1.23 кА");
    EXPECT_EQ(ValueAxis::readout(57.74, "В"), "57.7 В");
    EXPECT_EQ(ValueAxis::readout(2.5e6, "В"), "2.50 МВ");
    const TickSet kiloVolts = ValueAxis::choose(-2600.0, 2600.0, 400.0, 11.0, "В");
    ASSERT_FALSE(kiloVolts.ticks.empty());
    const std::string kV = " кВ";
    EXPECT_EQ(kiloVolts.ticks.back().label.substr(kiloVolts.ticks.back().label.size() - kV.size()),
              kV);
}

// Currents beside voltages: each unit is fitted on an axis of its own, so a
// 15 A current is not flattened against hundreds of volts, and each zooms.
TEST_F(LayoutFixture, CurrentsAndVoltagesTogetherGetAnAxisEach) {
    voltage.unit = "В";
    voltage.points = {{0.0f, -400.0f}, {1.0f, 400.0f}};
    current.unit = "А";
    current.gain = 1.0f;
    PlotLayout layout = compute();
    EXPECT_EQ(layout.valueUnit, "В");
    ASSERT_TRUE(layout.second);
    EXPECT_EQ(layout.second->unit, "А");
    EXPECT_NEAR(layout.valueHi, 440.0, 1e-9);
    EXPECT_NEAR(layout.second->lo, 0.3, 1e-9);
    EXPECT_NEAR(layout.second->hi, 15.7, 1e-9);
    ASSERT_FALSE(layout.second->ticks.ticks.empty());
    EXPECT_NE(layout.second->ticks.ticks.back().label.find(" А"), std::string::npos);
    // The current's peak stands near the top of the area, on its own scale.
    const Curve& ia = layout.curves[1];
    EXPECT_TRUE(ia.onSecond);
    EXPECT_NEAR(ia.pixels.back().y, layout.second->value.toPixel(15.0), 0.01);
    EXPECT_LT(ia.pixels.back().y, layout.analog.y + layout.analog.height * 0.1);

    PlotLayout::Input in;
    in.width = 800;
    in.height = 500;
    in.to = 1.0;
    in.series = &all;
    in.measure = charWidth;
    in.valueRange = std::make_pair(-1.0, 1.0);
    in.secondRange = std::make_pair(2.0, 4.0);
    layout.compute(in);
    EXPECT_EQ(layout.valueHi, 1.0);
    EXPECT_EQ(layout.second->lo, 2.0);
    EXPECT_DOUBLE_EQ(layout.second->value.toPixel(4.0), layout.analog.y);

    // One unit alone needs no second axis.
    all = {&voltage, &breaker};
    EXPECT_FALSE(compute().second);
}

} // namespace
} // namespace TavView
