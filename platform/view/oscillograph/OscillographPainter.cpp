#include "platform/view/oscillograph/OscillographPainter.h"

#include "platform/view/oscillograph/SpanRaster.h"
#include "platform/view/oscillograph/TimeAxis.h"
#include "platform/view/oscillograph/ValueAxis.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <unordered_map>

namespace TavView {

namespace {

struct Rgb {
    double r, g, b;
};

// A dark scope face: the phase colours (yellow among them) read well on it.
constexpr Rgb Face{0.12, 0.13, 0.14};
constexpr Rgb PlotFace{0.06, 0.07, 0.08};
constexpr Rgb Grid{0.20, 0.22, 0.24};
constexpr Rgb Frame{0.40, 0.43, 0.46};
constexpr Rgb Text{0.80, 0.82, 0.85};
constexpr Rgb LaneText{0.55, 0.58, 0.62};
constexpr Rgb CursorLine{0.95, 0.95, 0.95};

void setColor(const Cairo::RefPtr<Cairo::Context>& cr, const Rgb& c) {
    cr->set_source_rgb(c.r, c.g, c.b);
}

void setColor(const Cairo::RefPtr<Cairo::Context>& cr, const Tav::Series& s) {
    cr->set_source_rgba(s.red(), s.green(), s.blue(), s.alpha());
}

void rectangle(const Cairo::RefPtr<Cairo::Context>& cr, const Rect& r) {
    cr->rectangle(r.x, r.y, r.width, r.height);
}

double textWidth(const Cairo::RefPtr<Cairo::Context>& cr, const std::string& text) {
    Cairo::TextExtents extents;
    cr->get_text_extents(text, extents);
    return extents.x_advance;
}

void showText(const Cairo::RefPtr<Cairo::Context>& cr, double x, double y,
              const std::string& text) {
    cr->move_to(x, y);
    cr->show_text(text);
}

// Lines on pixel centres so one-pixel strokes stay sharp.
double crisp(double v) {
    return std::floor(v) + 0.5;
}

} // namespace

void OscillographPainter::selectFont(const Cairo::RefPtr<Cairo::Context>& cr) {
    cr->select_font_face("sans-serif", Cairo::FONT_SLANT_NORMAL, Cairo::FONT_WEIGHT_NORMAL);
    cr->set_font_size(PlotLayout::FontSize);
}

TextMeasure OscillographPainter::measureWith(const Cairo::RefPtr<Cairo::Context>& cr) {
    selectFont(cr);
    // The same labels and descriptions come back on every layout; asking the
    // font each time costs more than the rest of the geometry.
    auto known = std::make_shared<std::unordered_map<std::string, double>>();
    return [cr, known](const std::string& text) {
        auto [at, added] = known->try_emplace(text, 0.0);
        if (added) {
            if (known->size() > 4096) {
                known->clear();
                at = known->emplace(text, 0.0).first;
            }
            at->second = textWidth(cr, text);
        }
        return at->second;
    };
}

void OscillographPainter::paintBackground(const Cairo::RefPtr<Cairo::Context>& cr,
                                          const PlotLayout& layout) {
    cr->save();
    selectFont(cr);
    // The frame around the plot only: each pixel of a full frame is written once.
    setColor(cr, Face);
    rectangle(cr, layout.area);
    rectangle(cr, layout.plot);
    cr->set_fill_rule(Cairo::FILL_RULE_EVEN_ODD);
    cr->fill();
    cr->set_fill_rule(Cairo::FILL_RULE_WINDING);
    setColor(cr, PlotFace);
    rectangle(cr, layout.plot);
    cr->fill();
    paintGrid(cr, layout);
    paintCurves(cr, layout);
    paintLabels(cr, layout);
    paintLegend(cr, layout);
    cr->restore();
}

void OscillographPainter::paintGrid(const Cairo::RefPtr<Cairo::Context>& cr,
                                    const PlotLayout& layout) {
    const Rect& plot = layout.plot;
    cr->set_line_width(1.0);
    setColor(cr, Grid);
    for (const Tick& t : layout.timeTicks.ticks) {
        const double x = crisp(layout.mapper.timeToX(t.value));
        cr->move_to(x, plot.y);
        cr->line_to(x, plot.bottom());
    }
    for (const Tick& t : layout.valueTicks.ticks) {
        const double y = crisp(layout.mapper.valueToY(t.value));
        cr->move_to(plot.x, y);
        cr->line_to(plot.right(), y);
    }
    for (const Lane& lane : layout.lanes) {
        cr->move_to(plot.x, crisp(lane.rect.y));
        cr->line_to(plot.right(), crisp(lane.rect.y));
    }
    cr->stroke();
    setColor(cr, Frame);
    cr->rectangle(crisp(plot.x), crisp(plot.y), std::floor(plot.width), std::floor(plot.height));
    cr->stroke();
}

void OscillographPainter::paintLabels(const Cairo::RefPtr<Cairo::Context>& cr,
                                      const PlotLayout& layout) {
    const Rect& plot = layout.plot;
    setColor(cr, Text);
    for (const Tick& t : layout.timeTicks.ticks) {
        const double width = textWidth(cr, t.label);
        // The outermost labels stay whole inside the widget.
        const double x = std::clamp(layout.mapper.timeToX(t.value) - width / 2.0, 0.0,
                                    std::max(0.0, layout.area.width - width));
        showText(cr, x, plot.bottom() + 16.0, t.label);
    }
    for (const Tick& t : layout.valueTicks.ticks) {
        const double y = layout.mapper.valueToY(t.value) + PlotLayout::FontSize / 2.0 - 1.0;
        showText(cr, plot.x - 6.0 - textWidth(cr, t.label), y, t.label);
    }
    // The second axis stands inside the right edge: a margin of its own would
    // change the plot's width, and with it what is read, as curves come and go.
    if (layout.second) {
        cr->set_line_width(1.0);
        for (const Tick& t : layout.second->ticks.ticks) {
            const double y = layout.second->value.toPixel(t.value);
            cr->move_to(plot.right() - 4.0, crisp(y));
            cr->line_to(plot.right(), crisp(y));
            showText(cr, plot.right() - 6.0 - textWidth(cr, t.label),
                     y + PlotLayout::FontSize / 2.0 - 1.0, t.label);
        }
        cr->stroke();
    }
    setColor(cr, LaneText);
    for (const Lane& lane : layout.lanes) {
        const double y = lane.rect.y + (lane.rect.height + PlotLayout::FontSize) / 2.0 - 1.0;
        showText(cr, plot.x + 4.0, y, lane.label);
    }
}

void OscillographPainter::paintCurves(const Cairo::RefPtr<Cairo::Context>& cr,
                                      const PlotLayout& layout) {
    cr->save();
    rectangle(cr, layout.plot);
    cr->clip();
    cr->set_line_width(1.0);
    cr->set_line_join(Cairo::LINE_JOIN_BEVEL);
    std::optional<SpanRaster> raster = SpanRaster::onto(cr, layout.plot);
    const auto rastered = [&](const Curve& c) { return raster && (c.dense || c.discrete); };
    for (const Curve& c : layout.curves) {
        if (c.pixels.empty() || rastered(c))
            continue;
        setColor(cr, *c.series);
        if (c.dense)
            fillColumns(cr, c);
        else
            strokePolyline(cr, c);
    }
    cr->restore();
    if (!raster)
        return;
    // After Cairo's own strokes: it must have flushed them before the memory is touched.
    raster = SpanRaster::onto(cr, layout.plot);
    for (const Curve& c : layout.curves) {
        if (c.pixels.empty() || !rastered(c))
            continue;
        raster->setColor(*c.series);
        if (c.discrete)
            rasterSteps(*raster, c);
        else
            rasterColumns(*raster, c);
    }
    raster->finish();
}

namespace {

// Pixel index of a coordinate; far-off points (those leading into the window)
// are pulled in so the conversion cannot overflow.
double onSurface(double v) {
    return std::isnan(v) ? -1e6 : std::clamp(v, -1e6, 1e6);
}

int pixelOf(double v) {
    if (std::isnan(v))
        return -1000000; // off the surface: nothing to draw
    return static_cast<int>(std::floor(std::clamp(v, -1e6, 1e6)));
}

// Calls bar(column, lowest y, highest y) for each column of a dense curve. Each
// bar reaches back to where the previous column ended, so the curve stays joined.
template <typename Bar> void forEachColumn(const std::vector<ColumnPoint>& px, Bar bar) {
    float previous = px.front().y;
    for (std::size_t i = 0; i < px.size();) {
        const double column = std::floor(px[i].x);
        const double next = column + 1.0;
        float lo = previous, hi = previous;
        for (; i < px.size() && px[i].x < next; ++i) {
            lo = std::min(lo, px[i].y);
            hi = std::max(hi, px[i].y);
        }
        previous = px[i - 1].y;
        bar(column, lo, hi);
    }
}

} // namespace

void OscillographPainter::strokePolyline(const Cairo::RefPtr<Cairo::Context>& cr, const Curve& c) {
    const ColumnPoint& first = c.pixels.front();
    cr->move_to(onSurface(first.x), onSurface(first.y));
    if (c.pixels.size() == 1)
        cr->rel_line_to(1.0, 0.0);
    double lastY = onSurface(first.y);
    for (std::size_t i = 1; i < c.pixels.size(); ++i) {
        const double x = onSurface(c.pixels[i].x), y = onSurface(c.pixels[i].y);
        // A state holds until the next sample changes it.
        if (c.discrete)
            cr->line_to(x, lastY);
        cr->line_to(x, y);
        lastY = y;
    }
    cr->stroke();
}

void OscillographPainter::fillColumns(const Cairo::RefPtr<Cairo::Context>& cr, const Curve& c) {
    forEachColumn(c.pixels, [&](double column, float lo, float hi) {
        const int top = pixelOf(lo);
        cr->rectangle(onSurface(column), top, 1.0, pixelOf(hi) - top + 1.0);
    });
    cr->fill();
}

void OscillographPainter::rasterColumns(SpanRaster& raster, const Curve& c) {
    forEachColumn(c.pixels, [&](double column, float lo, float hi) {
        raster.vertical(pixelOf(column), pixelOf(lo), pixelOf(hi));
    });
}

void OscillographPainter::rasterSteps(SpanRaster& raster, const Curve& c) {
    const ColumnPoint* previous = &c.pixels.front();
    raster.vertical(pixelOf(previous->x), pixelOf(previous->y), pixelOf(previous->y));
    for (std::size_t i = 1; i < c.pixels.size(); ++i) {
        const ColumnPoint& p = c.pixels[i];
        const int y = pixelOf(previous->y);
        raster.horizontal(pixelOf(previous->x), pixelOf(p.x), y);
        raster.vertical(pixelOf(p.x), y, pixelOf(p.y));
        previous = &p;
    }
}

void OscillographPainter::paintLegend(const Cairo::RefPtr<Cairo::Context>& cr,
                                      const PlotLayout& layout) {
    for (const LegendEntry& e : layout.legend) {
        setColor(cr, *e.series);
        cr->rectangle(e.x, e.baseline - 8.0, 12.0, 8.0);
        cr->fill();
        setColor(cr, Text);
        showText(cr, e.x + 16.0, e.baseline, e.series->description);
    }
    if (layout.envelope) {
        setColor(cr, LaneText);
        const double width = textWidth(cr, PlotLayout::EnvelopeMark);
        showText(cr, layout.area.width - PlotLayout::MarginRight - width,
                 4.0 + PlotLayout::FontSize, PlotLayout::EnvelopeMark);
    }
}

Rect OscillographPainter::readoutRect(const PlotLayout& layout, double cursorX) {
    const double width = layout.readoutWidth + 16.0;
    const double height =
        std::min(layout.plot.height,
                 static_cast<double>(layout.curves.size() + 1) * PlotLayout::LineHeight + 8.0);
    double x = cursorX + 8.0;
    if (x + width > layout.plot.right())
        x = cursorX - 8.0 - width;
    return {std::floor(x), std::floor(layout.plot.y + 4.0), std::ceil(width), std::ceil(height)};
}

std::vector<Rect> OscillographPainter::cursorDamage(const PlotLayout& layout, double cursorX) {
    if (!layout.plot.contains(cursorX, layout.plot.y))
        return {};
    return {{std::floor(cursorX) - 1.0, layout.plot.y, 3.0, layout.plot.height},
            readoutRect(layout, cursorX)};
}

void OscillographPainter::paintCursor(const Cairo::RefPtr<Cairo::Context>& cr,
                                      const PlotLayout& layout, double cursorX) {
    if (!layout.plot.contains(cursorX, layout.plot.y))
        return;
    cr->save();
    selectFont(cr);
    cr->set_line_width(1.0);
    setColor(cr, CursorLine);
    cr->move_to(crisp(cursorX), layout.plot.y);
    cr->line_to(crisp(cursorX), layout.plot.bottom());
    cr->stroke();

    const Rect box = readoutRect(layout, cursorX);
    cr->rectangle(box.x, box.y, box.width, box.height);
    cr->set_source_rgba(PlotFace.r, PlotFace.g, PlotFace.b, 0.85);
    cr->fill();
    rectangle(cr, box);
    cr->clip();

    const double t = layout.mapper.xToTime(cursorX);
    double baseline = box.y + 4.0 + PlotLayout::FontSize;
    setColor(cr, Text);
    // A hundredth of a tick step: fine enough to tell neighbouring samples apart.
    const double resolution = layout.timeTicks.step > 0.0 ? layout.timeTicks.step / 100.0 : 1e-6;
    showText(cr, box.x + 8.0, baseline, TimeAxis::label(t, resolution));
    for (const Curve& c : layout.curves) {
        // The recorded value: gain only scales how the curve is drawn.
        const std::optional<float> v = PlotLayout::valueAt(*c.points, t - c.origin);
        if (!v)
            continue;
        baseline += PlotLayout::LineHeight;
        setColor(cr, *c.series);
        cr->rectangle(box.x + 8.0, baseline - 8.0, 10.0, 8.0);
        cr->fill();
        setColor(cr, Text);
        showText(cr, box.x + 22.0, baseline, c.series->description);
        const std::string value = c.discrete
                                      ? AxisTicks::formatFixed(*v, *v == std::round(*v) ? 0 : 2)
                                      : ValueAxis::readout(*v, c.series->unit);
        showText(cr, box.right() - 8.0 - textWidth(cr, value), baseline, value);
    }
    cr->restore();
}

} // namespace TavView
