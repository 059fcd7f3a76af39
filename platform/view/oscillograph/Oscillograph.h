#pragma once

#include "platform/view/oscillograph/IOscillograph.h"
#include "platform/view/oscillograph/PlotLayout.h"
#include "platform/view/oscillograph/TimeWindow.h"

#include <cairomm/surface.h>
#include <gtkmm/adjustment.h>
#include <gtkmm/drawingarea.h>
#include <gtkmm/eventbox.h>
#include <gtkmm/grid.h>
#include <gtkmm/scrollbar.h>
#include <sigc++/connection.h>

#include <optional>
#include <utility>
#include <vector>

namespace TavView {

// The oscillograph widget: a plot area over a horizontal scrollbar. Wheel zooms
// time around the pointer, Shift+wheel scrolls, Ctrl+wheel zooms values, a left
// drag pans, Home or a double click shows the whole duration.
class Oscillograph : public Gtk::EventBox, public IOscillograph {
public:
    Oscillograph();
    ~Oscillograph() override;

    void addSeries(const Tav::Series* series) override;
    void deleteSeries(const Tav::Series* series) override;
    void clearSeries() override;
    int getPixelWidth() const override;
    void getSeriesRange(double& from, double& to) const override;
    void getSeriesRange(float& from, float& to) const override;
    void setSeriesRange(double from, double to) override;
    void setSeriesRange(float from, float to) override;
    void setHorizontalInterval(float from, float to) override;
    void setSeriesDuration(float duration) override;
    void showAll() override;
    bool isActive() const override;

    // Home and double click: the whole duration, values fitted again.
    void showWholeDuration();
    // The time under the pointer's cursor line, while there is one.
    std::optional<double> cursorTime() const;

    // For tests: the parts of the widget and the current geometry.
    Gtk::DrawingArea& plotArea() { return area_; }
    Gtk::Scrollbar& horizontalScrollbar() { return scrollbar_; }
    const PlotLayout& layout();

private:
    bool _onDraw(const Cairo::RefPtr<Cairo::Context>& cr);
    void _onAreaSizeAllocate(Gtk::Allocation& allocation);
    bool _onScroll(GdkEventScroll* event);
    bool _onButtonPress(GdkEventButton* event);
    bool _onButtonRelease(GdkEventButton* event);
    bool _onMotion(GdkEventMotion* event);
    bool _onLeave(GdkEventCrossing* event);
    bool _onKeyPress(GdkEventKey* event);
    void _onScrollbarChanged();
    bool _onLayoutIdle();

    // The window moved by the user: repaint now, report at the next frame.
    void userMovedWindow();
    void windowChanged();
    void reportRangeAtNextFrame();
    void syncScrollbar();
    void invalidateLayout();
    void ensureLayout();
    void seriesExtent(double& from, double& to) const;
    void moveCursor(std::optional<double> x);
    void queueDamage(const std::vector<Rect>& rects);
    void zoomValues(double anchorY, double factor);
    void watch(const Tav::Series* series);

    Gtk::Grid grid_;
    Gtk::DrawingArea area_;
    Glib::RefPtr<Gtk::Adjustment> adjustment_;
    Gtk::Scrollbar scrollbar_;

    std::vector<const Tav::Series*> series_;
    std::vector<std::pair<const Tav::Series*, std::vector<sigc::connection>>> watched_;
    TimeWindow window_;
    std::optional<std::pair<double, double>> valueZoom_;
    std::optional<std::pair<double, double>> secondZoom_; // of the second value axis
    PlotLayout layout_;
    Cairo::RefPtr<Cairo::ImageSurface> measureSurface_;
    Cairo::RefPtr<Cairo::Context> measureContext_;
    TextMeasure measure_;
    Cairo::RefPtr<Cairo::ImageSurface> background_;
    bool layoutDirty_ = true;
    bool backgroundDirty_ = true;
    sigc::connection layoutIdle_;
    guint rangeTick_ = 0;
    int pixelWidth_ = 0;
    std::optional<double> cursorX_;
    std::optional<double> dragX_;
    double dragFrom_ = 0.0;
    bool syncingScrollbar_ = false;
};

} // namespace TavView
