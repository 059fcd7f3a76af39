#include "platform/view/GtkWidgetHelper.h"

#include <gtkmm/widget.h>
#include <gtkmm/window.h>

namespace Tav {

Gtk::Widget* GtkWidgetHelper::toWidget(IView* view) {
    return dynamic_cast<Gtk::Widget*>(view);
}

Gtk::Window* GtkWidgetHelper::getParentWindow(IView* view) {
    Gtk::Widget* widget = toWidget(view);
    if (widget == nullptr)
        return nullptr;
    if (auto* window = dynamic_cast<Gtk::Window*>(widget))
        return window;
    // A widget not yet in a window is its own top level, and that is no window.
    Gtk::Widget* top = widget->get_toplevel();
    if (top == nullptr || !top->get_is_toplevel())
        return nullptr;
    return dynamic_cast<Gtk::Window*>(top);
}

} // namespace Tav
