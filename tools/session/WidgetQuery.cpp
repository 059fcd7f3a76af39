#include "tools/session/WidgetQuery.h"

#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/menuitem.h>
#include <gtkmm/viewport.h>
#include <gtkmm/window.h>

#include <algorithm>

namespace TavSession {

namespace {

void visitTree(GtkWidget* widget, const std::function<void(Gtk::Widget&)>& visit) {
    visit(*Glib::wrap(widget));
    if (GTK_IS_CONTAINER(widget)) {
        gtk_container_forall(
            GTK_CONTAINER(widget),
            [](GtkWidget* child, gpointer data) {
                visitTree(child, *static_cast<const std::function<void(Gtk::Widget&)>*>(data));
            },
            const_cast<std::function<void(Gtk::Widget&)>*>(&visit));
    }
}

Rect allocationOnScreen(Gtk::Widget& widget) {
    Gtk::Widget* top = widget.get_toplevel();
    auto window = top->get_window();
    if (!window)
        return {};
    int x = 0, y = 0, originX = 0, originY = 0;
    if (!widget.translate_coordinates(*top, 0, 0, x, y))
        return {};
    window->get_origin(originX, originY);
    const Gtk::Allocation a = widget.get_allocation();
    return {originX + x, originY + y, a.get_width(), a.get_height()};
}

Rect intersect(const Rect& a, const Rect& b) {
    const int left = std::max(a.x, b.x), top = std::max(a.y, b.y);
    const int right = std::min(a.x + a.width, b.x + b.width);
    const int bottom = std::min(a.y + a.height, b.y + b.height);
    return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

} // namespace

void forEachWidgetUnder(Gtk::Widget& root, const std::function<void(Gtk::Widget&)>& visit) {
    visitTree(root.gobj(), visit);
}

void forEachWidget(const std::function<void(Gtk::Widget&)>& visit) {
    for (Gtk::Window* window : Gtk::Window::list_toplevels())
        forEachWidgetUnder(*window, visit);
}

Rect visibleRect(Gtk::Widget& widget) {
    Rect rect = allocationOnScreen(widget);
    for (Gtk::Widget* up = widget.get_parent(); up != nullptr; up = up->get_parent()) {
        // A viewport's allocation is the window onto its scrolled child.
        if (dynamic_cast<Gtk::Viewport*>(up) != nullptr || up->get_parent() == nullptr)
            rect = intersect(rect, allocationOnScreen(*up));
    }
    return rect;
}

bool showing(Gtk::Widget& widget) {
    return widget.get_is_drawable() && !visibleRect(widget).empty();
}

std::string textOf(Gtk::Widget& widget) {
    if (auto* label = dynamic_cast<Gtk::Label*>(&widget))
        return label->get_text();
    if (auto* item = dynamic_cast<Gtk::MenuItem*>(&widget))
        return item->get_label();
    if (auto* button = dynamic_cast<Gtk::Button*>(&widget))
        return button->get_label();
    return {};
}

Gtk::Widget* findByText(const std::string& text) {
    Gtk::Widget* found = nullptr;
    forEachWidget([&](Gtk::Widget& w) {
        if (found == nullptr && showing(w) && textOf(w) == text)
            found = &w;
    });
    return found;
}

std::vector<std::string> textsUnder(Gtk::Widget& root) {
    std::vector<std::string> texts;
    forEachWidgetUnder(root, [&](Gtk::Widget& w) {
        if (dynamic_cast<Gtk::Label*>(&w) != nullptr && showing(w) && !textOf(w).empty())
            texts.push_back(textOf(w));
    });
    return texts;
}

Gtk::Window* largestWindow() {
    Gtk::Window* best = nullptr;
    int bestArea = 0;
    for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
        if (!window->get_mapped())
            continue;
        const int area = window->get_width() * window->get_height();
        if (area > bestArea) {
            best = window;
            bestArea = area;
        }
    }
    return best;
}

} // namespace TavSession
