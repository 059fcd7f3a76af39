#pragma once

#include "platform/view/PanelView.h"

#include <gtkmm/paned.h>

namespace Tav {

// A divider between two parts of the panel layout. On its first real
// allocation it puts the divider where the panels' preferred sizes ask; after
// that the divider is the user's.
class DockPaned : public Gtk::Paned, public IPreferredExtent {
public:
    explicit DockPaned(Gtk::Orientation orientation);

    std::optional<int> preferredExtent(Gtk::Orientation orientation) const override;
    // A side that asks for no size starts at its natural size instead of its
    // minimum: side columns are filled with text that should not be cut.
    void startAtNaturalSize(bool first, bool second);

protected:
    void on_size_allocate(Gtk::Allocation& allocation) override;

private:
    std::optional<int> startExtent(const Gtk::Widget* child, bool natural) const;

    bool placed_ = false;
    bool naturalFirst_ = false;
    bool naturalSecond_ = false;
};

// Holds one part of the layout (a column or row) and hides itself while empty,
// so that an unused side takes no room and shows no divider.
class DockHolder : public Gtk::Box, public IPreferredExtent {
public:
    DockHolder();

    Gtk::Widget* root() const { return root_; }
    void setRoot(Gtk::Widget* root);

    std::optional<int> preferredExtent(Gtk::Orientation orientation) const override {
        return preferredExtentOf(root_, orientation);
    }

private:
    Gtk::Widget* root_ = nullptr;
};

} // namespace Tav
