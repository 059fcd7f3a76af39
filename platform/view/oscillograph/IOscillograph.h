#pragma once

#include "platform/common/Series.h"
#include "platform/view/IView.h"

#include <sigc++/signal.h>

namespace TavView {

// A scope view of series over time. The x axis is in seconds relative to the
// start of the recording; the visible window always lies in [0, duration].
// The view draws series it is handed but never owns them: the owner keeps each
// one alive until it is deleted or the view is cleared.
class IOscillograph : public Tav::IView {
public:
    virtual void addSeries(const Tav::Series* series) = 0;
    virtual void deleteSeries(const Tav::Series* series) = 0;
    virtual void clearSeries() = 0;

    // Width of the plot area in pixels: the number of columns a window is drawn on.
    virtual int getPixelWidth() const = 0;

    virtual void getSeriesRange(double& from, double& to) const = 0;
    virtual void getSeriesRange(float& from, float& to) const = 0;
    // Moves the visible window (clamped to the duration) and reports it through
    // signalSeriesRangeChanged, as a user's gesture would.
    virtual void setSeriesRange(double from, double to) = 0;
    virtual void setSeriesRange(float from, float to) = 0;
    // Moves the visible window without reporting it: for an owner that already
    // knows the new window and must not be called back.
    virtual void setHorizontalInterval(float from, float to) = 0;
    // The total length that the horizontal scrollbar spans.
    virtual void setSeriesDuration(float duration) = 0;
    // Takes in every series handed over since the last clear: recomputes the
    // geometry from their points and repaints once. The time window and a value
    // zoom the user chose are kept, because the owner calls this after each
    // redraw the window itself asked for.
    virtual void showAll() = 0;
    // Whether there is anything drawn: at least one series is shown.
    virtual bool isActive() const = 0;

    // The plot area's width changed (new width in pixels).
    sigc::signal<void(int)> signalPixelWidthChanged;
    // The visible window changed, by the user or by setSeriesRange (from, to in seconds).
    sigc::signal<void(float, float)> signalSeriesRangeChanged;
};

} // namespace TavView
