#pragma once

#include "platform/common/IBorderable.h"
#include "platform/common/IFragmentable.h"
#include "platform/common/PointF.h"

#include <cstdint>
#include <sigc++/signal.h>
#include <string>
#include <vector>

namespace Tav {

// A curve for the oscillograph: points in seconds (x) and raw units (y), and how
// to draw them. The owner fills `points` and then emits the change signals; the
// widget never owns a series.
class Series : public IBorderable, public IFragmentable {
public:
    enum Kind : std::uint32_t { Analog = 0, Discrete = 1 };

    Kind kind = Analog;
    // Bytes in memory: red, green, blue, alpha (0xFF00EAFF is opaque yellow).
    std::uint32_t color = 0xFF000000u;
    std::string description;
    // Vertical scale factor on the shared value axis: an analogue point is drawn
    // at y * gain. Discrete series ignore it.
    float gain = 1.0f;
    // Value of one raw sample unit; the owner applies it when filling points.
    float transformRatio = 0.0f;
    // What the values are in once the ratio is applied ("А", "В"); empty when
    // unknown. Analogue curves of two units are drawn on two value axes.
    std::string unit;
    // Points' x is in seconds after `origin`, which is in seconds on the
    // widget's time axis: a 32-bit x then keeps sample precision however far
    // the window lies from the axis' zero.
    double origin = 0.0;
    std::vector<PointF> points;
    // The points are a min/max envelope of more samples than the plot has
    // columns: zooming in shows single samples.
    bool envelope = false;
    // The series' place among the drawn ones; discrete series use it as lane.
    std::uint32_t ordinal = 0;

    sigc::signal<void()> signalChanged;       // description, colour, kind or gain changed
    sigc::signal<void()> signalPointsChanged; // the point list changed

    // Ranges of the points, x relative to `origin`. An empty series gives [0, 0] on both axes; a
    // NaN coordinate is left out of its axis' range.
    void getRangeX(float& min, float& max) const override;
    void getRangeY(float& min, float& max) const override;
    void getRangeXY(float& minX, float& maxX, float& minY, float& maxY) const override;

    std::uint32_t getFragmentableColor() const override { return color; }
    std::string getFragmentableDescription() const override { return description; }

    // The colour's components in [0, 1], for Cairo.
    double red() const { return channel(0); }
    double green() const { return channel(1); }
    double blue() const { return channel(2); }
    double alpha() const { return channel(3); }

private:
    double channel(int byteIndex) const;
};

} // namespace Tav
