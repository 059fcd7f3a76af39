#include "platform/view/oscillograph/Oscillograph.h"

#include "platform/view/oscillograph/OscillographPainter.h"

#include <gdk/gdkkeysyms.h>
#include <glibmm/main.h>

#include <algorithm>
#include <cmath>

namespace TavView {

namespace {

constexpr double WheelZoom = 0.8;     // window width per wheel step towards the user
constexpr double WheelScroll = 0.1;   // share of the window per Shift+wheel step
constexpr double ScrollbarPage = 0.9; // share of the window per scrollbar page

double wheelSteps(const GdkEventScroll* event) {
    switch (event->direction) {
    case GDK_SCROLL_UP:
    case GDK_SCROLL_LEFT:
        return -1.0;
    case GDK_SCROLL_DOWN:
    case GDK_SCROLL_RIGHT:
        return 1.0;
    case GDK_SCROLL_SMOOTH:
        return event->delta_y != 0.0 ? event->delta_y : event->delta_x;
    }
    return 0.0;
}

// [lo, hi] of `map` zoomed by `factor` around the value at pixel `anchorY`;
// empty when the range would grow too narrow for the float values drawn.
std::optional<std::pair<double, double>> zoomedAround(const AxisMap& map, double anchorY,
                                                      double factor) {
    const double lo = std::min(map.valueFrom(), map.valueTo());
    const double hi = std::max(map.valueFrom(), map.valueTo());
    const double anchor = std::clamp(map.toValue(anchorY), lo, hi);
    const double newLo = anchor - (anchor - lo) * factor;
    const double newHi = anchor + (hi - anchor) * factor;
    if (!(newHi - newLo > 1e-9 * std::max(1.0, std::abs(anchor))) || !std::isfinite(newHi - newLo))
        return std::nullopt;
    return std::make_pair(newLo, newHi);
}

} // namespace

Oscillograph::Oscillograph()
    : adjustment_(Gtk::Adjustment::create(0.0, 0.0, 0.0)),
      scrollbar_(adjustment_, Gtk::ORIENTATION_HORIZONTAL) {
    area_.set_hexpand(true);
    area_.set_vexpand(true);
    area_.set_can_focus(true);
    area_.set_size_request(200, 120);
    area_.add_events(Gdk::SCROLL_MASK | Gdk::SMOOTH_SCROLL_MASK | Gdk::BUTTON_PRESS_MASK |
                     Gdk::BUTTON_RELEASE_MASK | Gdk::POINTER_MOTION_MASK | Gdk::LEAVE_NOTIFY_MASK |
                     Gdk::KEY_PRESS_MASK);
    scrollbar_.set_hexpand(true);
    grid_.attach(area_, 0, 0);
    grid_.attach(scrollbar_, 0, 1);
    add(grid_);

    area_.signal_draw().connect(sigc::mem_fun(*this, &Oscillograph::_onDraw));
    area_.signal_size_allocate().connect(sigc::mem_fun(*this, &Oscillograph::_onAreaSizeAllocate));
    area_.signal_scroll_event().connect(sigc::mem_fun(*this, &Oscillograph::_onScroll));
    area_.signal_button_press_event().connect(sigc::mem_fun(*this, &Oscillograph::_onButtonPress));
    area_.signal_button_release_event().connect(
        sigc::mem_fun(*this, &Oscillograph::_onButtonRelease));
    area_.signal_motion_notify_event().connect(sigc::mem_fun(*this, &Oscillograph::_onMotion));
    area_.signal_leave_notify_event().connect(sigc::mem_fun(*this, &Oscillograph::_onLeave));
    area_.signal_key_press_event().connect(sigc::mem_fun(*this, &Oscillograph::_onKeyPress));
    adjustment_->signal_value_changed().connect(
        sigc::mem_fun(*this, &Oscillograph::_onScrollbarChanged));

    measureSurface_ = Cairo::ImageSurface::create(Cairo::FORMAT_ARGB32, 1, 1);
    measureContext_ = Cairo::Context::create(measureSurface_);
    measure_ = OscillographPainter::measureWith(measureContext_);
    syncScrollbar();
}

Oscillograph::~Oscillograph() {
    clearSeries();
    // Last, since clearing schedules a layout that must not outlive the widget.
    layoutIdle_.disconnect();
    if (rangeTick_ != 0)
        area_.remove_tick_callback(rangeTick_);
}

void Oscillograph::addSeries(const Tav::Series* series) {
    // The owner may hand the same series again on each redraw; it is drawn once.
    if (series == nullptr || std::find(series_.begin(), series_.end(), series) != series_.end())
        return;
    series_.push_back(series);
    watch(series);
    invalidateLayout();
}

void Oscillograph::watch(const Tav::Series* series) {
    // Listening does not change the series; its signals are simply not const.
    auto& mutableSeries = const_cast<Tav::Series&>(*series);
    const auto changed = [this] { invalidateLayout(); };
    watched_.push_back({series,
                        {mutableSeries.signalChanged.connect(changed),
                         mutableSeries.signalPointsChanged.connect(changed)}});
}

void Oscillograph::deleteSeries(const Tav::Series* series) {
    const auto listed = std::find(series_.begin(), series_.end(), series);
    if (listed == series_.end())
        return;
    series_.erase(listed);
    for (auto it = watched_.begin(); it != watched_.end(); ++it) {
        if (it->first != series)
            continue;
        for (sigc::connection& c : it->second)
            c.disconnect();
        watched_.erase(it);
        break;
    }
    invalidateLayout();
}

void Oscillograph::clearSeries() {
    for (auto& [series, connections] : watched_) {
        for (sigc::connection& c : connections)
            c.disconnect();
    }
    watched_.clear();
    series_.clear();
    invalidateLayout();
}

int Oscillograph::getPixelWidth() const {
    return pixelWidth_;
}

void Oscillograph::getSeriesRange(double& from, double& to) const {
    from = window_.from();
    to = window_.to();
}

void Oscillograph::getSeriesRange(float& from, float& to) const {
    from = static_cast<float>(window_.from());
    to = static_cast<float>(window_.to());
}

void Oscillograph::setSeriesRange(double from, double to) {
    window_.setRange(from, to);
    windowChanged();
    // This report carries the final window, so a gesture's pending one would repeat it.
    if (rangeTick_ != 0) {
        area_.remove_tick_callback(rangeTick_);
        rangeTick_ = 0;
    }
    signalSeriesRangeChanged.emit(static_cast<float>(window_.from()),
                                  static_cast<float>(window_.to()));
}

void Oscillograph::setSeriesRange(float from, float to) {
    setSeriesRange(static_cast<double>(from), static_cast<double>(to));
}

void Oscillograph::setHorizontalInterval(float from, float to) {
    window_.setRange(from, to);
    windowChanged();
}

void Oscillograph::setSeriesDuration(float duration) {
    window_.setDuration(duration);
    windowChanged();
}

void Oscillograph::showAll() {
    invalidateLayout();
}

bool Oscillograph::isActive() const {
    return !series_.empty();
}

void Oscillograph::showWholeDuration() {
    const bool moved = window_.from() != 0.0 || window_.to() != window_.duration();
    window_.showAll();
    valueZoom_.reset();
    secondZoom_.reset();
    windowChanged();
    if (moved)
        reportRangeAtNextFrame();
}

const PlotLayout& Oscillograph::layout() {
    ensureLayout();
    return layout_;
}

void Oscillograph::windowChanged() {
    syncScrollbar();
    invalidateLayout();
}

void Oscillograph::userMovedWindow() {
    windowChanged();
    reportRangeAtNextFrame();
}

void Oscillograph::reportRangeAtNextFrame() {
    // The owner re-reads the window's packets from disk on every report, so a
    // burst of wheel steps or drag motions is reported once per frame.
    if (rangeTick_ != 0)
        return;
    rangeTick_ = area_.add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>&) {
        rangeTick_ = 0;
        signalSeriesRangeChanged.emit(static_cast<float>(window_.from()),
                                      static_cast<float>(window_.to()));
        return false;
    });
}

void Oscillograph::syncScrollbar() {
    syncingScrollbar_ = true;
    const double width = window_.width();
    adjustment_->configure(window_.from(), 0.0, window_.duration(), width / 10.0,
                           width * ScrollbarPage, width);
    scrollbar_.set_sensitive(window_.scrollable() && width < window_.duration());
    syncingScrollbar_ = false;
}

void Oscillograph::_onScrollbarChanged() {
    if (syncingScrollbar_)
        return;
    const double from = adjustment_->get_value();
    const double width = window_.width();
    window_.setRange(from, from + width);
    userMovedWindow();
}

void Oscillograph::invalidateLayout() {
    layoutDirty_ = true;
    backgroundDirty_ = true;
    // Before the frame clock's paint, so the draw finds the geometry ready.
    if (!layoutIdle_.connected())
        layoutIdle_ = Glib::signal_idle().connect(
            sigc::mem_fun(*this, &Oscillograph::_onLayoutIdle), Glib::PRIORITY_HIGH_IDLE);
}

bool Oscillograph::_onLayoutIdle() {
    ensureLayout();
    area_.queue_draw();
    return false;
}

void Oscillograph::ensureLayout() {
    if (!layoutDirty_)
        return;
    PlotLayout::Input input;
    input.width = area_.get_allocated_width();
    input.height = area_.get_allocated_height();
    input.from = window_.from();
    input.to = window_.to();
    if (!(input.to > input.from))
        seriesExtent(input.from, input.to);
    input.series = &series_;
    input.valueRange = valueZoom_;
    input.secondRange = secondZoom_;
    input.measure = measure_;
    layout_.compute(input);
    layoutDirty_ = false;
    backgroundDirty_ = true;
}

void Oscillograph::seriesExtent(double& from, double& to) const {
    // Without a duration there is no window to draw, yet series handed over
    // should still be seen: their own time span stands in, unscrollable.
    double lo = INFINITY, hi = -INFINITY;
    for (const Tav::Series* s : series_) {
        if (s->points.empty())
            continue;
        float min = 0.0f, max = 0.0f;
        s->getRangeX(min, max);
        lo = std::min(lo, s->origin + min);
        hi = std::max(hi, s->origin + max);
    }
    if (hi > lo) {
        from = lo;
        to = hi;
    }
}

void Oscillograph::_onAreaSizeAllocate(Gtk::Allocation& allocation) {
    const int width = PlotLayout::plotWidthFor(allocation.get_width());
    invalidateLayout();
    if (width == pixelWidth_)
        return;
    pixelWidth_ = width;
    signalPixelWidthChanged.emit(width);
}

bool Oscillograph::_onDraw(const Cairo::RefPtr<Cairo::Context>& cr) {
    ensureLayout();
    const int width = area_.get_allocated_width();
    const int height = area_.get_allocated_height();
    if (backgroundDirty_ || !background_) {
        // An image in memory, so the painter may write curve columns directly.
        background_ = Cairo::ImageSurface::create(Cairo::FORMAT_RGB24, width, height);
        OscillographPainter::paintBackground(Cairo::Context::create(background_), layout_);
        backgroundDirty_ = false;
    }
    cr->set_source(background_, 0.0, 0.0);
    cr->paint();
    if (cursorX_)
        OscillographPainter::paintCursor(cr, layout_, *cursorX_);
    return true;
}

std::optional<double> Oscillograph::cursorTime() const {
    if (!cursorX_)
        return std::nullopt;
    return layout_.mapper.xToTime(*cursorX_);
}

void Oscillograph::moveCursor(std::optional<double> x) {
    if (x == cursorX_)
        return;
    if (layoutDirty_) {
        cursorX_ = x; // a full repaint is on its way
        return;
    }
    if (cursorX_)
        queueDamage(OscillographPainter::cursorDamage(layout_, *cursorX_));
    cursorX_ = x;
    if (cursorX_)
        queueDamage(OscillographPainter::cursorDamage(layout_, *cursorX_));
}

void Oscillograph::queueDamage(const std::vector<Rect>& rects) {
    for (const Rect& r : rects) {
        area_.queue_draw_area(static_cast<int>(std::floor(r.x)), static_cast<int>(std::floor(r.y)),
                              static_cast<int>(std::ceil(r.width)) + 1,
                              static_cast<int>(std::ceil(r.height)) + 1);
    }
}

bool Oscillograph::_onScroll(GdkEventScroll* event) {
    const double steps = wheelSteps(event);
    if (steps == 0.0)
        return true;
    const double factor = std::pow(WheelZoom, -steps);
    if (event->state & GDK_CONTROL_MASK) {
        zoomValues(event->y, factor);
        return true;
    }
    const double from = window_.from(), to = window_.to();
    if (event->state & GDK_SHIFT_MASK) {
        window_.panBy(steps * window_.width() * WheelScroll);
    } else if (pixelWidth_ > 0) {
        const double share = (event->x - PlotLayout::MarginLeft) / pixelWidth_;
        window_.zoomAround(from + share * window_.width(), factor);
    }
    if (window_.from() != from || window_.to() != to)
        userMovedWindow();
    return true;
}

// Both value axes zoom around the same height, so the curves on them stay
// where they were against each other.
void Oscillograph::zoomValues(double anchorY, double factor) {
    ensureLayout();
    const auto zoomed = zoomedAround(layout_.mapper.value(), anchorY, factor);
    if (!zoomed)
        return;
    const auto second =
        layout_.second ? zoomedAround(layout_.second->value, anchorY, factor) : std::nullopt;
    if (layout_.second && !second)
        return;
    valueZoom_ = zoomed;
    secondZoom_ = second;
    invalidateLayout();
}

bool Oscillograph::_onButtonPress(GdkEventButton* event) {
    if (event->button != 1)
        return false;
    area_.grab_focus();
    if (event->type == GDK_2BUTTON_PRESS) {
        dragX_.reset();
        showWholeDuration();
        return true;
    }
    if (event->type == GDK_BUTTON_PRESS) {
        dragX_ = event->x;
        dragFrom_ = window_.from();
    }
    return true;
}

bool Oscillograph::_onButtonRelease(GdkEventButton* event) {
    if (event->button == 1)
        dragX_.reset();
    return true;
}

bool Oscillograph::_onMotion(GdkEventMotion* event) {
    if (dragX_ && (event->state & GDK_BUTTON1_MASK) && pixelWidth_ > 0) {
        const double from = window_.from(), to = window_.to();
        const double width = window_.width();
        const double start = dragFrom_ - (event->x - *dragX_) * width / pixelWidth_;
        window_.setRange(start, start + width);
        if (window_.from() != from || window_.to() != to)
            userMovedWindow();
    }
    const bool inside =
        event->x >= PlotLayout::MarginLeft && event->x < PlotLayout::MarginLeft + pixelWidth_;
    moveCursor(inside ? std::optional<double>(event->x) : std::nullopt);
    return true;
}

bool Oscillograph::_onLeave(GdkEventCrossing*) {
    moveCursor(std::nullopt);
    return false;
}

bool Oscillograph::_onKeyPress(GdkEventKey* event) {
    if (event->keyval != GDK_KEY_Home && event->keyval != GDK_KEY_KP_Home)
        return false;
    showWholeDuration();
    return true;
}

} // namespace TavView
