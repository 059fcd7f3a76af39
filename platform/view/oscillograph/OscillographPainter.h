#pragma once

#include "platform/view/oscillograph/PlotLayout.h"

#include <cairomm/context.h>

#include <vector>

namespace TavView {

class SpanRaster;

// Draws a computed layout into any Cairo context: the widget's, or an image
// surface in tests and benchmarks. The background (grid, axes, curves, legend)
// changes with the data; the cursor layer changes with every pointer motion and
// is painted on top of a cached background.
class OscillographPainter {
public:
    static void paintBackground(const Cairo::RefPtr<Cairo::Context>& cr, const PlotLayout& layout);
    static void paintCursor(const Cairo::RefPtr<Cairo::Context>& cr, const PlotLayout& layout,
                            double cursorX);
    // What the cursor layer covers at cursorX: repainting these is enough when it moves.
    static std::vector<Rect> cursorDamage(const PlotLayout& layout, double cursorX);
    // A text measure that matches what the painter draws; it remembers what it
    // measured, so keep one for as long as the context.
    static TextMeasure measureWith(const Cairo::RefPtr<Cairo::Context>& cr);
    static void selectFont(const Cairo::RefPtr<Cairo::Context>& cr);

private:
    static void paintGrid(const Cairo::RefPtr<Cairo::Context>& cr, const PlotLayout& layout);
    static void paintLabels(const Cairo::RefPtr<Cairo::Context>& cr, const PlotLayout& layout);
    static void paintCurves(const Cairo::RefPtr<Cairo::Context>& cr, const PlotLayout& layout);
    static void strokePolyline(const Cairo::RefPtr<Cairo::Context>& cr, const Curve& curve);
    static void fillColumns(const Cairo::RefPtr<Cairo::Context>& cr, const Curve& curve);
    static void rasterColumns(SpanRaster& raster, const Curve& curve);
    static void rasterSteps(SpanRaster& raster, const Curve& curve);
    static void paintLegend(const Cairo::RefPtr<Cairo::Context>& cr, const PlotLayout& layout);
    static Rect readoutRect(const PlotLayout& layout, double cursorX);
};

} // namespace TavView
