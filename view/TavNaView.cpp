#include "view/TavNaView.h"

#include "platform/view/GtkWidgetHelper.h"

#include <algorithm>
#include <gdkmm/display.h>
#include <gdkmm/monitor.h>

namespace TavNA {

TavNaView::TavNaView() {
    header.set_hexpand(true);
    footer.set_hexpand(true);
    body.set_hexpand(true);
    body.set_vexpand(true);
    mainBox.pack_start(header, Gtk::PACK_SHRINK);
    mainBox.pack_start(body, Gtk::PACK_EXPAND_WIDGET);
    mainBox.pack_start(footer, Gtk::PACK_SHRINK);
    mainBox.set_orientation(Gtk::ORIENTATION_VERTICAL);
    add(mainBox);
    get_style_context()->add_class("Window");
    set_default_size(1280, 800);
    signal_delete_event().connect(sigc::mem_fun(*this, &TavNaView::_onClose));
}

// The first size leaves a margin of the work area for what else is on the
// desktop; the panels scroll, so nothing inside needs the window larger.
void TavNaView::_fitToScreen() {
    auto display = Gdk::Display::get_default();
    if (!display)
        return;
    auto monitor = display->get_primary_monitor();
    if (!monitor && display->get_n_monitors() > 0)
        monitor = display->get_monitor(0);
    if (!monitor)
        return;
    Gdk::Rectangle area;
    monitor->get_workarea(area);
    if (area.get_width() <= 0 || area.get_height() <= 0)
        return;
    set_default_size(std::max(1, area.get_width() * 9 / 10),
                     std::max(1, area.get_height() * 9 / 10));
}

void TavNaView::show(Tav::IView* parent, const std::string& title) {
    Tav::Window::set_title(title);
    if (!get_realized())
        _fitToScreen();
    if (Gtk::Window* owner = Tav::GtkWidgetHelper::getParentWindow(parent); owner && owner != this)
        set_transient_for(*owner);
    show_all();
}

void TavNaView::addHeader(Tav::IView* view) {
    _replaceChildren(header, view);
}

void TavNaView::addWidget(Tav::IView* view) {
    Gtk::Widget* widget = Tav::GtkWidgetHelper::toWidget(view);
    if (widget == nullptr)
        return;
    body.pack_start(*widget, Gtk::PACK_EXPAND_WIDGET);
    widget->show_all();
}

void TavNaView::addFooter(Tav::IView* view) {
    _replaceChildren(footer, view);
}

void TavNaView::_replaceChildren(Gtk::Box& box, Tav::IView* view) {
    Gtk::Widget* widget = Tav::GtkWidgetHelper::toWidget(view);
    if (widget == nullptr)
        return;
    for (Gtk::Widget* child : box.get_children())
        box.remove(*child);
    box.pack_start(*widget, Gtk::PACK_EXPAND_WIDGET);
    widget->show_all();
}

// Returning true keeps the toolkit from destroying the window: the presenter
// and the host decide when it goes.
bool TavNaView::_onClose(GdkEventAny*) {
    signalCloseRequest.emit();
    return true;
}

} // namespace TavNA
