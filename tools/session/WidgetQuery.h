#pragma once

#include "tools/session/Geometry.h"

#include <functional>
#include <string>
#include <vector>

namespace Gtk {
class Widget;
class Window;
} // namespace Gtk

// What is on the screen, read the way a person reads it: which widgets show,
// what they say and where they are. Every function here runs on the main
// thread (inside onUi).
namespace TavSession {

// Every widget of every toplevel window, internal children included, parents
// before children.
void forEachWidget(const std::function<void(Gtk::Widget&)>& visit);
void forEachWidgetUnder(Gtk::Widget& root, const std::function<void(Gtk::Widget&)>& visit);

// Visible, mapped and not scrolled or clipped wholly out of sight.
bool showing(Gtk::Widget& widget);

// The text a person reads on a label, button, check box or menu item; "" for
// anything else.
std::string textOf(Gtk::Widget& widget);

// Showing widgets of type T that satisfy `match`, in tree order.
template <typename T>
std::vector<T*> showingWidgets(const std::function<bool(T&)>& match = nullptr) {
    std::vector<T*> found;
    forEachWidget([&](Gtk::Widget& w) {
        auto* t = dynamic_cast<T*>(&w);
        if (t != nullptr && showing(w) && (!match || match(*t)))
            found.push_back(t);
    });
    return found;
}

// The first showing widget whose text is `text`, or nullptr.
Gtk::Widget* findByText(const std::string& text);

// Every text showing under `root`, in tree order.
std::vector<std::string> textsUnder(Gtk::Widget& root);

// The widget's part that can be seen, in screen coordinates: its allocation
// cut by every scrolled or clipping ancestor.
Rect visibleRect(Gtk::Widget& widget);

// The largest mapped toplevel window: in a session, the module's main window.
Gtk::Window* largestWindow();

} // namespace TavSession
