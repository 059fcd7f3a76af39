#include "view/StreamChannelsView.h"

#include "platform/view/GtkWidgetHelper.h"

namespace TavNA {

template <typename Interface>
StreamChannelsView<Interface>::StreamChannelsView() : Gtk::Box(Gtk::ORIENTATION_VERTICAL, 0) {
    // Filling the width it is given: aligned, it would take the width that
    // suits the height of its one-a-line layout, and so stay one a line.
    set_halign(Gtk::ALIGN_FILL);
    set_hexpand(false);
    set_vexpand(false);
}

template <typename Interface> StreamChannelsView<Interface>::~StreamChannelsView() {
    for (auto& box : boxes) {
        for (Gtk::Widget* cell : box->get_children())
            if (auto* child = dynamic_cast<Gtk::FlowBoxChild*>(cell); child && child->get_child())
                child->remove();
        remove(*box);
    }
}

template <typename Interface> Gtk::FlowBox& StreamChannelsView<Interface>::_boxWithRoom() {
    if (boxes.empty() || inLastBox >= kButtonsPerBox) {
        auto box = std::make_unique<Gtk::FlowBox>();
        box->set_orientation(Gtk::ORIENTATION_HORIZONTAL);
        box->set_selection_mode(Gtk::SELECTION_NONE);
        box->set_halign(Gtk::ALIGN_FILL);
        box->set_hexpand(false);
        box->set_vexpand(false);
        // As many a line as the panel's width holds, one at the least: a wider
        // line would put boxes beyond the panel's edge, out of reach.
        box->set_min_children_per_line(1);
        pack_start(*box, false, false, 0);
        box->show();
        boxes.push_back(std::move(box));
        inLastBox = 0;
    }
    return *boxes.back();
}

template <typename Interface> void StreamChannelsView<Interface>::addView(Tav::IView* view) {
    Gtk::Widget* widget = Tav::GtkWidgetHelper::toWidget(view);
    if (widget == nullptr)
        return;
    _boxWithRoom().add(*widget);
    ++inLastBox;
    // Only the new button: showing everything again would walk every button
    // already there, once per button added.
    widget->show_all();
    show();
}

template <typename Interface>
std::vector<Gtk::FlowBoxChild*> StreamChannelsView<Interface>::cells() {
    std::vector<Gtk::FlowBoxChild*> all;
    for (auto& box : boxes)
        for (Gtk::Widget* cell : box->get_children())
            all.push_back(dynamic_cast<Gtk::FlowBoxChild*>(cell));
    return all;
}

template class StreamChannelsView<ISvStreamChannelsView>;
template class StreamChannelsView<IGooseStreamChannelsView>;

} // namespace TavNA
