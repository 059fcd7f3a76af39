#include "view/StreamChannelView.h"

#include "platform/view/GtkWidgetHelper.h"

#include <sigc++/functors/mem_fun.h>

namespace TavNA {

template <typename Interface>
StreamChannelView<Interface>::StreamChannelView() : Gtk::Box(Gtk::ORIENTATION_HORIZONTAL, 0) {
    set_hexpand(false);
    set_vexpand(false);
    pack_start(button, false, false, 0);
    button.signal_toggled().connect(
        sigc::mem_fun(*this, &StreamChannelView::_onCheckButtonToggled));
}

template <typename Interface> void StreamChannelView<Interface>::addView(Tav::IView* view) {
    Gtk::Widget* widget = Tav::GtkWidgetHelper::toWidget(view);
    if (widget == nullptr)
        return;
    pack_start(*widget, false, false, 0);
    show_all();
}

template <typename Interface> void StreamChannelView<Interface>::setName(const std::string& text) {
    button.set_label(text);
}

template <typename Interface> void StreamChannelView<Interface>::_onCheckButtonToggled() {
    signalStatusChanged.emit(button.get_active());
}

template class StreamChannelView<ISvStreamChannelView>;
template class StreamChannelView<IGooseStreamChannelView>;

} // namespace TavNA
