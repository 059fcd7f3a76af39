#include "platform/view/DockPaned.h"

#include <algorithm>

namespace Tav {

DockPaned::DockPaned(Gtk::Orientation orientation) : Gtk::Paned(orientation) {
    set_wide_handle(true);
}

std::optional<int> DockPaned::preferredExtent(Gtk::Orientation orientation) const {
    const auto first = preferredExtentOf(get_child1(), orientation);
    const auto second = preferredExtentOf(get_child2(), orientation);
    if (!first && !second)
        return std::nullopt;
    // Across the divider both parts share the extent; along it they add up.
    if (orientation != get_orientation())
        return std::max(first.value_or(0), second.value_or(0));
    return first.value_or(0) + second.value_or(0);
}

void DockPaned::startAtNaturalSize(bool first, bool second) {
    naturalFirst_ = first;
    naturalSecond_ = second;
}

std::optional<int> DockPaned::startExtent(const Gtk::Widget* child, bool natural) const {
    if (auto preferred = preferredExtentOf(child, get_orientation()))
        return preferred;
    if (!natural || child == nullptr || !child->get_visible())
        return std::nullopt;
    int minimum = 0;
    int naturalSize = 0;
    if (get_orientation() == Gtk::ORIENTATION_HORIZONTAL)
        child->get_preferred_width(minimum, naturalSize);
    else
        child->get_preferred_height(minimum, naturalSize);
    return naturalSize;
}

void DockPaned::on_size_allocate(Gtk::Allocation& allocation) {
    const bool horizontal = get_orientation() == Gtk::ORIENTATION_HORIZONTAL;
    const int total = horizontal ? allocation.get_width() : allocation.get_height();
    // The first allocations of a window not yet mapped are a pixel wide.
    if (!placed_ && total > 1) {
        placed_ = true;
        const auto first = startExtent(get_child1(), naturalFirst_);
        const auto second = startExtent(get_child2(), naturalSecond_);
        const bool bothShown = get_child1() != nullptr && get_child1()->get_visible() &&
                               get_child2() != nullptr && get_child2()->get_visible();
        // Two parts that both grow with the window and both ask share the
        // room in the ratio they asked for.
        const bool bothGrow = bothShown && child_property_resize(*get_child1()).get_value() &&
                              child_property_resize(*get_child2()).get_value();
        if (bothGrow && first && second && *first + *second > 0)
            set_position(
                static_cast<int>(static_cast<long long>(total) * *first / (*first + *second)));
        else if (bothShown && first)
            set_position(std::min(*first, total));
        else if (bothShown && second)
            set_position(std::max(0, total - *second));
    }
    Gtk::Paned::on_size_allocate(allocation);
}

DockHolder::DockHolder() : Gtk::Box(Gtk::ORIENTATION_VERTICAL) {
    // show_all() from a window must not reveal an empty side.
    set_no_show_all(true);
}

void DockHolder::setRoot(Gtk::Widget* root) {
    if (root_ != nullptr)
        remove(*root_);
    root_ = root;
    if (root_ != nullptr) {
        pack_start(*root_, true, true);
        root_->show_all();
        show();
    } else {
        hide();
    }
}

} // namespace Tav
