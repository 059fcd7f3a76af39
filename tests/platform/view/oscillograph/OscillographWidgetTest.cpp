#include "platform/view/oscillograph/Oscillograph.h"
#include "tests/support/GuiTest.h"

#include <gtest/gtest.h>
#include <gtkmm/window.h>

#include <gdk/gdkkeysyms.h>

#include <utility>
#include <vector>

namespace TavView {
namespace {

using namespace std::chrono_literals;

// A real widget in a real window; events are synthesised and delivered to the
// plot area as the display would deliver them.
struct OscillographWidget : testing::Test {
    Gtk::Window window;
    Oscillograph scope;
    std::vector<int> widths;
    std::vector<std::pair<float, float>> ranges;

    OscillographWidget() {
        window.set_default_size(800, 400);
        window.add(scope);
        window.show_all();
        EXPECT_TRUE(TavTest::pumpUntil([&] { return scope.getPixelWidth() > 0; }));
        TavTest::pumpPending();
        scope.signalPixelWidthChanged.connect([this](int w) { widths.push_back(w); });
        scope.signalSeriesRangeChanged.connect(
            [this](float from, float to) { ranges.emplace_back(from, to); });
    }

    Gtk::DrawingArea& area() { return scope.plotArea(); }

    void deliver(GdkEvent* event) {
        event->any.window = GDK_WINDOW(g_object_ref(area().get_window()->gobj()));
        event->any.send_event = TRUE;
        gtk_widget_event(GTK_WIDGET(area().gobj()), event);
        gdk_event_free(event);
    }

    void wheel(double x, GdkScrollDirection direction, unsigned state = 0) {
        GdkEvent* e = gdk_event_new(GDK_SCROLL);
        e->scroll.direction = direction;
        e->scroll.x = x;
        e->scroll.y = 100.0;
        e->scroll.state = state;
        deliver(e);
    }

    void button(GdkEventType type, double x) {
        GdkEvent* e = gdk_event_new(type);
        e->button.button = 1;
        e->button.x = x;
        e->button.y = 100.0;
        deliver(e);
    }

    void motion(double x, unsigned state) {
        GdkEvent* e = gdk_event_new(GDK_MOTION_NOTIFY);
        e->motion.x = x;
        e->motion.y = 100.0;
        e->motion.state = state;
        deliver(e);
    }

    void key(guint keyval) {
        GdkEvent* e = gdk_event_new(GDK_KEY_PRESS);
        e->key.keyval = keyval;
        deliver(e);
    }

    // Gestures report at the next frame; wait for it, then for any stragglers.
    void settle() {
        TavTest::pumpUntil([&] { return !ranges.empty(); }, 2s);
        TavTest::pumpFor(100ms);
    }

    std::pair<double, double> range() const {
        double from = -1.0, to = -1.0;
        scope.getSeriesRange(from, to);
        return {from, to};
    }

    double xOf(double t) {
        const double from = range().first, width = range().second - range().first;
        return PlotLayout::MarginLeft + (t - from) / width * scope.getPixelWidth();
    }
};

TEST_F(OscillographWidget, ResizeReportsThePlotWidthOnlyWhenItChanges) {
    const int before = scope.getPixelWidth();
    EXPECT_EQ(before, PlotLayout::plotWidthFor(area().get_allocated_width()));
    window.resize(1000, 400);
    ASSERT_TRUE(TavTest::pumpUntil([&] { return !widths.empty(); }));
    EXPECT_EQ(widths.back(), scope.getPixelWidth());
    EXPECT_GT(widths.back(), before);
    widths.clear();
    window.resize(1000, 300); // taller or shorter, the columns stay the same
    TavTest::pumpFor(200ms);
    EXPECT_TRUE(widths.empty());
    EXPECT_TRUE(ranges.empty());
}

TEST_F(OscillographWidget, SetSeriesRangeReportsAtOnceAndOtherSettersStayQuiet) {
    Tav::Series s;
    s.points = {{0.0f, 0.0f}, {10.0f, 1.0f}};
    scope.setSeriesDuration(10.0f);
    scope.addSeries(&s);
    scope.showAll();
    scope.setHorizontalInterval(1.0f, 2.0f);
    EXPECT_EQ(range(), std::make_pair(1.0, 2.0));
    s.signalPointsChanged.emit();
    scope.deleteSeries(&s);
    scope.clearSeries();
    TavTest::pumpFor(100ms);
    EXPECT_TRUE(ranges.empty());

    scope.setSeriesRange(2.0, 4.0);
    ASSERT_EQ(ranges.size(), 1u);
    EXPECT_EQ(ranges[0], std::make_pair(2.0f, 4.0f));
    scope.setSeriesRange(-1.0f, 3.0f);
    ASSERT_EQ(ranges.size(), 2u);
    EXPECT_EQ(ranges[1], std::make_pair(0.0f, 4.0f)) << "clamped to the duration";
    TavTest::pumpFor(100ms);
    EXPECT_EQ(ranges.size(), 2u);
}

// The pointer sits off the window's centre, where zooming around the middle
// would pass as well; a drag's scale is checked to the pixel.
TEST_F(OscillographWidget, WheelAndDragFollowThePointerStopAtTheEndsAndReportOncePerBurst) {
    scope.setSeriesDuration(10.0f);
    scope.setHorizontalInterval(2.0f, 6.0f);
    const double x = xOf(3.0);
    for (int i = 0; i < 5; ++i)
        wheel(x, GDK_SCROLL_UP);
    settle();
    ASSERT_EQ(ranges.size(), 1u);
    const auto [from, to] = range();
    EXPECT_NEAR(from + (to - from) * 0.25, 3.0, 1e-6) << "the time under the pointer stays";
    EXPECT_FLOAT_EQ(ranges[0].first, static_cast<float>(from));

    ranges.clear();
    const double width = to - from;
    motion(400.0, 0); // moving without a button only moves the cursor
    button(GDK_BUTTON_PRESS, 400.0);
    motion(300.0, GDK_BUTTON1_MASK);
    EXPECT_NEAR(range().first, from + 100.0 * width / scope.getPixelWidth(), 1e-6);
    motion(-5000.0, GDK_BUTTON1_MASK);
    button(GDK_BUTTON_RELEASE, -5000.0);
    settle();
    EXPECT_EQ(ranges.size(), 1u);
    EXPECT_NEAR(range().first, 10.0 - width, 1e-9);
    EXPECT_EQ(range().second, 10.0);

    ranges.clear();
    for (int i = 0; i < 60; ++i)
        wheel(x, GDK_SCROLL_DOWN);
    settle();
    EXPECT_EQ(ranges.size(), 1u);
    EXPECT_EQ(range(), std::make_pair(0.0, 10.0));

    ranges.clear();
    wheel(x, GDK_SCROLL_DOWN); // already showing everything
    TavTest::pumpFor(100ms);
    EXPECT_TRUE(ranges.empty());

    scope.setHorizontalInterval(1.0f, 2.0f);
    key(GDK_KEY_Home);
    settle();
    EXPECT_EQ(ranges.size(), 1u);
    EXPECT_EQ(range(), std::make_pair(0.0, 10.0));
}

TEST_F(OscillographWidget, ShiftWheelScrollsAndCtrlWheelZoomsOnlyValues) {
    Tav::Series s, amps;
    s.points = {{0.0f, -1.0f}, {10.0f, 1.0f}};
    amps.unit = "А";
    amps.points = {{0.0f, -100.0f}, {10.0f, 100.0f}};
    scope.addSeries(&s);
    scope.addSeries(&amps);
    scope.setSeriesDuration(10.0f);
    scope.setHorizontalInterval(1.0f, 3.0f);
    for (int i = 0; i < 3; ++i)
        wheel(xOf(2.0), GDK_SCROLL_DOWN, GDK_SHIFT_MASK);
    settle();
    EXPECT_EQ(ranges.size(), 1u);
    EXPECT_NEAR(range().first, 1.6, 1e-9);
    EXPECT_NEAR(range().second, 3.6, 1e-9);

    ranges.clear();
    const double before = scope.layout().valueHi - scope.layout().valueLo;
    ASSERT_TRUE(scope.layout().second);
    const double secondBefore = scope.layout().second->hi - scope.layout().second->lo;
    wheel(xOf(2.0), GDK_SCROLL_UP, GDK_CONTROL_MASK);
    TavTest::pumpFor(100ms);
    EXPECT_TRUE(ranges.empty());
    EXPECT_NEAR(scope.layout().valueHi - scope.layout().valueLo, before * 0.8, before * 1e-6);
    EXPECT_NEAR(scope.layout().second->hi - scope.layout().second->lo, secondBefore * 0.8,
                secondBefore * 1e-6);
    EXPECT_NEAR(range().first, 1.6, 1e-9);
}

TEST_F(OscillographWidget, ScrollbarSpansTheDurationAndMovesTheWindow) {
    scope.setSeriesDuration(10.0f);
    scope.setSeriesRange(2.0, 4.0);
    ranges.clear();
    const auto adjustment = scope.horizontalScrollbar().get_adjustment();
    EXPECT_EQ(adjustment->get_upper(), 10.0);
    EXPECT_EQ(adjustment->get_page_size(), 2.0);
    EXPECT_EQ(adjustment->get_value(), 2.0);
    EXPECT_TRUE(ranges.empty()) << "following the window is not a move";

    adjustment->set_value(7.0);
    settle();
    EXPECT_EQ(ranges.size(), 1u);
    EXPECT_EQ(range(), std::make_pair(7.0, 9.0));
    adjustment->set_value(9.5); // the adjustment itself keeps the page inside
    settle();
    EXPECT_EQ(range(), std::make_pair(8.0, 10.0));
}

TEST_F(OscillographWidget, NothingMovesWithoutADuration) {
    scope.setSeriesDuration(0.0f);
    wheel(300.0, GDK_SCROLL_UP);
    wheel(300.0, GDK_SCROLL_DOWN, GDK_SHIFT_MASK);
    button(GDK_BUTTON_PRESS, 300.0);
    motion(100.0, GDK_BUTTON1_MASK);
    button(GDK_BUTTON_RELEASE, 100.0);
    key(GDK_KEY_Home);
    TavTest::pumpFor(200ms);
    EXPECT_TRUE(ranges.empty());
    EXPECT_EQ(range(), std::make_pair(0.0, 0.0));

    Tav::Series s; // still drawn, over its own span
    s.points = {{2.0f, 0.0f}, {3.0f, 1.0f}};
    scope.addSeries(&s);
    EXPECT_DOUBLE_EQ(scope.layout().mapper.timeToX(2.0), scope.layout().plot.x);
    EXPECT_DOUBLE_EQ(scope.layout().mapper.timeToX(3.0), scope.layout().plot.right());
    EXPECT_EQ(range(), std::make_pair(0.0, 0.0));
}

TEST_F(OscillographWidget, SeriesAreDrawnButNotOwned) {
    auto s = std::make_unique<Tav::Series>();
    s->points = {{0.0f, 0.0f}, {1.0f, 1.0f}};
    EXPECT_FALSE(scope.isActive());
    scope.addSeries(s.get());
    scope.addSeries(s.get());
    EXPECT_TRUE(scope.isActive());
    EXPECT_EQ(scope.layout().curves.size(), 1u) << "a series handed twice is drawn once";
    scope.deleteSeries(s.get());
    EXPECT_FALSE(scope.isActive());
    s.reset(); // the owner may drop it once deleted
    TavTest::pumpFor(50ms);
    EXPECT_TRUE(scope.layout().curves.empty());
}

} // namespace
} // namespace TavView
