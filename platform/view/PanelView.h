#pragma once

#include "platform/view/IPanelView.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>
#include <gtkmm/revealer.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/viewport.h>
#include <memory>
#include <optional>

namespace Tav {

// Something in the panel layout that may ask for a size along one axis when
// the layout first appears.
class IPreferredExtent {
public:
    virtual ~IPreferredExtent() = default;
    virtual std::optional<int> preferredExtent(Gtk::Orientation orientation) const = 0;
};

// Asks `widget` when it can answer; empty for any other widget or a hidden one.
std::optional<int> preferredExtentOf(const Gtk::Widget* widget, Gtk::Orientation orientation);

// A panel: a title bar with a collapse button above a content view that some
// presenter owns. The panel never destroys its content. The content scrolls
// inside the panel, so however much it holds, the window need not grow.
class PanelView : public Gtk::Box, public IPanelView, public IPreferredExtent {
public:
    PanelView(const std::string& title, Gtk::Widget* content);
    ~PanelView() override;

    void setMinimumSize(int width, int height) override;
    void setPreferredSize(int width, int height) override;
    std::string title() const override { return title_; }
    void setCollapsed(bool collapsed) override;
    bool isCollapsed() const override { return collapsed_; }

    std::optional<int> preferredExtent(Gtk::Orientation orientation) const override;

    // Takes the content out so that tearing the panel down leaves it intact.
    void releaseContent();
    Gtk::Widget& titleBar() { return titleBar_; }
    Gtk::Button& collapseButton() { return collapseButton_; }

protected:
    void get_preferred_width_vfunc(int& minimum, int& natural) const override;
    void get_preferred_height_vfunc(int& minimum, int& natural) const override;

private:
    void _onCollapseClicked();
    void applyMinimumSize();
    void moveDivider();

    std::string title_;
    Gtk::Box titleBar_{Gtk::ORIENTATION_HORIZONTAL};
    Gtk::Label titleLabel_;
    Gtk::Button collapseButton_;
    Gtk::Image collapseImage_;
    Gtk::Revealer revealer_;
    Gtk::ScrolledWindow scroller_;
    // Only for content that cannot scroll by itself.
    std::unique_ptr<Gtk::Viewport> viewport_;
    bool collapsed_ = false;
    int minWidth_ = 0;
    int minHeight_ = 0;
    int preferredWidth_ = 0;
    int preferredHeight_ = 0;
    // Where the enclosing divider stood before collapsing.
    std::optional<int> dividerBeforeCollapse_;
};

} // namespace Tav
