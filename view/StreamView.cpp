#include "view/StreamView.h"

#include "platform/view/GtkWidgetHelper.h"

#include <sigc++/functors/mem_fun.h>

namespace TavNA {

namespace {
const char* const selectedClass = "selected";
}

template <typename Interface> StreamView<Interface>::StreamView() : Tav::ExtendedExpander(true) {
    button.set_halign(Gtk::ALIGN_START);
    button.set_relief(Gtk::RELIEF_NONE);
    button.get_style_context()->add_class("stream");
    set_label_widget(button);
    button.signal_clicked().connect(sigc::mem_fun(*this, &StreamView::select));
    expandedConnection =
        signal_expanded_changed().connect(sigc::mem_fun(*this, &StreamView::_onExpandChanged));
    show_all();
}

template <typename Interface> void StreamView<Interface>::setName(const std::string& text) {
    button.set_label(text);
}

template <typename Interface> void StreamView<Interface>::setNameTooltip(const std::string& text) {
    button.set_tooltip_text(text);
}

template <typename Interface> void StreamView<Interface>::addView(Tav::IView* view) {
    Gtk::Widget* widget = Tav::GtkWidgetHelper::toWidget(view);
    if (widget == nullptr)
        return;
    if (get_child() != nullptr)
        Gtk::Bin::remove();
    add(*widget);
    show_all();
}

// An entry already marked stays quiet, so toggling a picked stream open or shut
// is not a new pick.
template <typename Interface> void StreamView<Interface>::_onExpandChanged() {
    auto style = button.get_style_context();
    if (style->has_class(selectedClass))
        return;
    style->add_class(selectedClass);
    signalSelected.emit();
}

// A click on the name picks the stream and toggles it, with one emission only.
template <typename Interface> void StreamView<Interface>::select() {
    _onExpandChanged();
    expandedConnection.block();
    set_expanded(!get_expanded());
    expandedConnection.unblock();
}

template <typename Interface> void StreamView<Interface>::unselect() {
    button.get_style_context()->remove_class(selectedClass);
}

template class StreamView<ISvStreamView>;
template class StreamView<IGooseStreamView>;

} // namespace TavNA
