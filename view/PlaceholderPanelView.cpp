#include "view/PlaceholderPanelView.h"

namespace TavNA {

PlaceholderPanelView::PlaceholderPanelView(const std::string& title)
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL, 0), label(title) {
    set_hexpand(true);
    set_vexpand(true);
    label.set_halign(Gtk::ALIGN_CENTER);
    label.set_valign(Gtk::ALIGN_CENTER);
    label.get_style_context()->add_class("placeholder");
    pack_start(label, Gtk::PACK_EXPAND_WIDGET);
    show_all();
}

} // namespace TavNA
