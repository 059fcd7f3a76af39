#include "view/RecordDescriptionView.h"

#include "platform/view/GtkWidgetHelper.h"

namespace TavNA {

RecordDescriptionView::RecordDescriptionView() : Gtk::Box(Gtk::ORIENTATION_VERTICAL) {
    set_vexpand(true);
    sections.set_homogeneous(false);
    sections.set_vexpand(false);
    sections.get_style_context()->add_class("recordDescription");
    pack_start(sections, false, false, 0);
    show_all();
}

void RecordDescriptionView::setView(Tav::IView* view) {
    Gtk::Widget* widget = Tav::GtkWidgetHelper::toWidget(view);
    if (widget == nullptr)
        return;
    sections.pack_start(*widget, Gtk::PACK_SHRINK, 0);
    show_all();
}

void RecordDescriptionView::clear() {
    for (Gtk::Widget* child : sections.get_children())
        sections.remove(*child);
}

} // namespace TavNA
