#pragma once

#include "platform/view/IView.h"

namespace Gtk {
class Widget;
class Window;
} // namespace Gtk

namespace Tav {

class GtkWidgetHelper {
public:
    // The view as a widget; null for a null view or one that is no widget.
    static Gtk::Widget* toWidget(IView* view);
    // The top-level window that holds the view (the view itself if it is one);
    // null when the view is no widget or not inside a window.
    static Gtk::Window* getParentWindow(IView* view);
};

} // namespace Tav
