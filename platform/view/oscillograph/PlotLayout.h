#pragma once

#include "platform/common/Series.h"
#include "platform/view/oscillograph/AxisTicks.h"
#include "platform/view/oscillograph/CoordinateMapper.h"
#include "platform/view/oscillograph/Decimator.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace TavView {

struct Rect {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;

    double right() const { return x + width; }
    double bottom() const { return y + height; }
    bool contains(double px, double py) const {
        return px >= x && px < right() && py >= y && py < bottom();
    }
};

// One series ready to stroke: pixel points and the value map they came from.
struct Curve {
    const Tav::Series* series = nullptr;
    // Points sorted by time: the series' own or a sorted copy held by the layout.
    const std::vector<Tav::PointF>* points = nullptr;
    double origin = 0.0; // the series' origin: points' x count from it
    bool discrete = false;
    // More points than columns: drawn as one bar per column rather than a polyline.
    bool dense = false;
    bool onSecond = false; // scaled by the second value axis
    double gain = 1.0;
    AxisMap value;
    std::vector<ColumnPoint> pixels; // x and y in pixels
};

// The scale of the analogue curves of a second unit, ticked inside the
// plot's right edge: currents and voltages shown together each keep a
// readable range.
struct SecondScale {
    std::string unit;
    double lo = -1.0;
    double hi = 1.0;
    AxisMap value; // onto the analogue area
    TickSet ticks;
};

struct Lane {
    std::uint32_t ordinal = 0;
    Rect rect;
    std::string label;
};

struct LegendEntry {
    const Tav::Series* series = nullptr;
    double x = 0.0; // left of the colour swatch
    double baseline = 0.0;
};

// Everything the painter needs, computed when the size, the data or the window
// changes, so that painting is only stroking and filling.
class PlotLayout {
public:
    static constexpr double MarginLeft = 64.0;
    static constexpr double MarginRight = 12.0;
    static constexpr double MarginBottom = 26.0;
    static constexpr double LineHeight = 15.0;
    static constexpr double FontSize = 11.0;
    // Shown at the right of the legend while a curve is an envelope.
    static constexpr const char* EnvelopeMark =
        "Огибающая (min/max): приблизьте, чтобы увидеть отсчёты";

    struct Input {
        int width = 0;
        int height = 0;
        double from = 0.0;
        double to = 0.0;
        const std::vector<const Tav::Series*>* series = nullptr;
        // The values the user zoomed to; unset fits the visible analogue data.
        std::optional<std::pair<double, double>> valueRange;
        std::optional<std::pair<double, double>> secondRange; // of the second axis

        TextMeasure measure;
    };

    static int plotWidthFor(int areaWidth);

    void compute(const Input& input);

    // The sample in force at time t (the last one at or before it), if t lies
    // within the series' points.
    static std::optional<float> valueAt(const std::vector<Tav::PointF>& points, double t);

    Rect area;
    Rect plot;
    Rect analog;
    double from = 0.0;
    double to = 0.0;
    double valueLo = -1.0;
    double valueHi = 1.0;
    std::string valueUnit; // of the curves on the left axis
    std::optional<SecondScale> second;
    bool hasAnalog = false;
    bool envelope = false;   // some curve is drawn as a min/max envelope
    CoordinateMapper mapper; // time over the plot, values over the analogue area
    TickSet timeTicks;
    TickSet valueTicks;
    std::vector<Curve> curves;
    std::vector<Lane> lanes;
    std::vector<LegendEntry> legend;
    double readoutWidth = 0.0;

private:
    void placeLegend(const Input& input);
    void placeLanes(const Input& input);
    void buildCurves(const Input& input);
    void fitValues(const Input& input);
    void assignUnits();
    std::pair<double, double> fitted(bool onSecond) const;

    std::deque<std::vector<Tav::PointF>> sortedCopies_;
};

} // namespace TavView
