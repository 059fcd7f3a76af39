#include "platform/view/oscillograph/OscillographPainter.h"

#include <gtest/gtest.h>

#include <cairomm/surface.h>

#include <algorithm>

#include <cmath>
#include <cstring>

namespace TavView {
namespace {

constexpr std::uint32_t Red = 0xFF0000FFu;   // bytes: 255, 0, 0, 255
constexpr std::uint32_t Green = 0xFF00FF00u; // bytes: 0, 255, 0, 255
constexpr std::uint32_t Blue = 0xFFFF0000u;  // bytes: 0, 0, 255, 255

struct Pixel {
    int r, g, b;
};

// Renders series into an offscreen image the way the widget does.
struct Canvas {
    static constexpr int Width = 640;
    static constexpr int Height = 360;

    Cairo::RefPtr<Cairo::ImageSurface> surface =
        Cairo::ImageSurface::create(Cairo::FORMAT_RGB24, Width, Height);
    Cairo::RefPtr<Cairo::Context> cr = Cairo::Context::create(surface);
    PlotLayout layout;
    bool direct = true;

    void render(const std::vector<const Tav::Series*>& series, double from, double to) {
        PlotLayout::Input in;
        in.width = Width;
        in.height = Height;
        in.from = from;
        in.to = to;
        in.series = &series;
        in.measure = OscillographPainter::measureWith(cr);
        layout.compute(in);
        if (direct) {
            OscillographPainter::paintBackground(cr, layout);
        } else {
            // A target that is not an image in memory takes Cairo's own path filler.
            auto recording = Cairo::RecordingSurface::create(Cairo::CONTENT_COLOR);
            OscillographPainter::paintBackground(Cairo::Context::create(recording), layout);
            cr->set_source(recording, 0.0, 0.0);
            cr->paint();
        }
        surface->flush();
    }

    Pixel at(int x, int y) const {
        const unsigned char* row = surface->get_data() + y * surface->get_stride();
        std::uint32_t v;
        std::memcpy(&v, row + 4 * x, sizeof v);
        return {static_cast<int>((v >> 16) & 0xFF), static_cast<int>((v >> 8) & 0xFF),
                static_cast<int>(v & 0xFF)};
    }

    // Whether the colour is near (x, y), allowing for antialiasing.
    bool near(double x, double y, std::uint32_t color, int radius = 1) const {
        const int want[3] = {static_cast<int>(color & 0xFF), static_cast<int>((color >> 8) & 0xFF),
                             static_cast<int>((color >> 16) & 0xFF)};
        for (int dy = -radius; dy <= radius; ++dy) {
            for (int dx = -radius; dx <= radius; ++dx) {
                const Pixel p = at(static_cast<int>(x) + dx, static_cast<int>(y) + dy);
                // Antialiased pixels blend with the dark face: the dominant channel shows the
                // curve.
                const int got[3] = {p.r, p.g, p.b};
                bool match = true;
                for (int c = 0; c < 3; ++c) {
                    if (want[c] == 255 ? got[c] < 120 : got[c] > 90)
                        match = false;
                }
                if (match)
                    return true;
            }
        }
        return false;
    }
};

Tav::Series series(std::uint32_t color, Tav::Series::Kind kind, std::vector<Tav::PointF> points) {
    Tav::Series s;
    s.color = color;
    s.kind = kind;
    s.points = std::move(points);
    s.description = "s";
    return s;
}

// Curves go to memory directly when the target allows it, else through Cairo;
// both must put the same pixels in the same places.
struct Render : testing::TestWithParam<bool> {};

TEST_P(Render, CurvesAndStepsLandWhereTheMapperPutsThem) {
    const Tav::Series high = series(Red, Tav::Series::Analog, {{0.0f, 5.0f}, {1.0f, 5.0f}});
    const Tav::Series low = series(Green, Tav::Series::Analog, {{0.0f, -5.0f}, {1.0f, -5.0f}});
    const Tav::Series step =
        series(Blue, Tav::Series::Discrete, {{0.0f, 0.0f}, {0.5f, 1.0f}, {1.0f, 1.0f}});
    Canvas canvas;
    canvas.direct = GetParam();
    canvas.render({&high, &low, &step}, 0.0, 1.0);
    const CoordinateMapper& m = canvas.layout.mapper;
    ASSERT_EQ(canvas.layout.lanes.size(), 1u);
    const Curve& stepCurve = canvas.layout.curves[2];

    for (double t : {0.1, 0.5, 0.9}) {
        EXPECT_TRUE(canvas.near(m.timeToX(t), m.valueToY(5.0), Red)) << t;
        EXPECT_TRUE(canvas.near(m.timeToX(t), m.valueToY(-5.0), Green)) << t;
        EXPECT_FALSE(canvas.near(m.timeToX(t), m.valueToY(0.0), Red, 2)) << t;
    }
    const double zeroY = stepCurve.value.toPixel(0.0), oneY = stepCurve.value.toPixel(1.0);
    EXPECT_TRUE(canvas.near(m.timeToX(0.25), zeroY, Blue));
    EXPECT_FALSE(canvas.near(m.timeToX(0.25), oneY, Blue, 2));
    EXPECT_TRUE(canvas.near(m.timeToX(0.75), oneY, Blue));
    EXPECT_FALSE(canvas.near(m.timeToX(0.75), zeroY, Blue, 2));
    // The rise is vertical at the sample, not a ramp from the previous one.
    EXPECT_TRUE(canvas.near(m.timeToX(0.5), (zeroY + oneY) / 2.0, Blue));
    EXPECT_FALSE(canvas.near(m.timeToX(0.4), (zeroY + oneY) / 2.0, Blue, 2));
}

TEST_P(Render, WildCoordinatesStayInsideThePlot) {
    const Tav::Series wild = series(Red, Tav::Series::Analog,
                                    {{-1e9f, 1e30f}, {0.5f, -1e30f}, {0.6f, NAN}, {1e9f, 3e38f}});
    Tav::Series steps = series(Blue, Tav::Series::Discrete, {{-1e9f, 0.0f}, {1e9f, 1e9f}});
    steps.description = "a lane";
    Canvas empty, canvas;
    empty.direct = canvas.direct = GetParam();
    empty.render({&steps}, 0.0, 1.0); // same lanes and legend, no analogue curve
    canvas.render({&wild, &steps}, 0.0, 1.0);
    const Rect& plot = canvas.layout.plot;
    ASSERT_DOUBLE_EQ(plot.y, empty.layout.plot.y);
    for (int y = 0; y < Canvas::Height; ++y) {
        for (int x = 0; x < Canvas::Width; ++x) {
            if (plot.contains(x, y) || y < plot.y)
                continue; // inside the plot, or the legend that differs by one entry
            const Pixel a = empty.at(x, y), b = canvas.at(x, y);
            // The value axis labels differ; curves must not reach below or beside the plot.
            if (x < plot.x - 1)
                continue;
            ASSERT_TRUE(a.r == b.r && a.g == b.g && a.b == b.b) << x << "," << y;
        }
    }
}

TEST(RenderCursor, CursorLayerStaysInsideItsDamage) {
    const Tav::Series a = series(Red, Tav::Series::Analog, {{0.0f, 1.0f}, {1.0f, 2.0f}});
    const Tav::Series b = series(Blue, Tav::Series::Discrete, {{0.0f, 1.0f}, {1.0f, 0.0f}});
    Canvas canvas;
    canvas.render({&a, &b}, 0.0, 1.0);
    const int stride = canvas.surface->get_stride();
    const std::vector<unsigned char> before(canvas.surface->get_data(),
                                            canvas.surface->get_data() + stride * Canvas::Height);
    for (double x : {canvas.layout.plot.x + 20.0, canvas.layout.plot.right() - 5.0}) {
        OscillographPainter::paintCursor(canvas.cr, canvas.layout, x);
        canvas.surface->flush();
        const std::vector<Rect> damage = OscillographPainter::cursorDamage(canvas.layout, x);
        ASSERT_EQ(damage.size(), 2u);
        int changed = 0;
        for (int py = 0; py < Canvas::Height; ++py) {
            for (int px = 0; px < Canvas::Width; ++px) {
                const std::size_t at = static_cast<std::size_t>(py * stride + 4 * px);
                if (std::memcmp(&before[at], canvas.surface->get_data() + at, 4) == 0)
                    continue;
                ++changed;
                const bool covered = std::any_of(damage.begin(), damage.end(),
                                                 [&](const Rect& r) { return r.contains(px, py); });
                ASSERT_TRUE(covered) << "cursor at " << x << " painted " << px << "," << py;
            }
        }
        EXPECT_GT(changed, 0);
        std::memcpy(canvas.surface->get_data(), before.data(), before.size());
        canvas.surface->mark_dirty();
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, Render, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& info) {
                             return info.param ? "Memory" : "Cairo";
                         });

} // namespace
} // namespace TavView
