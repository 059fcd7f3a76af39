#include "view/StreamChannelsView.h"

#include "platform/view/GtkWidgetHelper.h"

namespace TavNA {

template <typename Interface> StreamChannelsView<Interface>::StreamChannelsView() {
    set_orientation(Gtk::ORIENTATION_HORIZONTAL);
    set_selection_mode(Gtk::SELECTION_NONE);
    set_halign(Gtk::ALIGN_START);
    set_hexpand(false);
    set_vexpand(false);
    set_min_children_per_line(5);
}

template <typename Interface> void StreamChannelsView<Interface>::addView(Tav::IView* view) {
    Gtk::Widget* widget = Tav::GtkWidgetHelper::toWidget(view);
    if (widget == nullptr)
        return;
    add(*widget);
    // Only the new button: showing the whole box again would walk every
    // button already there, once per button added.
    widget->show_all();
}

template class StreamChannelsView<ISvStreamChannelsView>;
template class StreamChannelsView<IGooseStreamChannelsView>;

} // namespace TavNA
