#pragma once

#include "platform/view/DockPaned.h"
#include "platform/view/IView.h"
#include "platform/view/PanelView.h"
#include "platform/view/Positions.h"

#include <gtkmm/box.h>
#include <vector>

namespace Tav {

// The panel layout: left column | centre column (top over bottom) | right
// column, every border a draggable divider.
class PanelManagerView : public Gtk::Box, public IView {
public:
    PanelManagerView();
    ~PanelManagerView() override;

    // The panel is owned by the layout; `content` stays its presenter's.
    PanelView* addPanel(const std::string& title, Positions position, Gtk::Widget* content,
                        PanelView* parent);
    const std::vector<PanelView*>& panels() const { return panels_; }

private:
    DockHolder& holderFor(Positions position);
    void addToDock(Positions position, PanelView& panel);
    void addBeside(PanelView& parent, Positions position, PanelView& panel);
    void replaceInParent(Gtk::Widget& old, Gtk::Widget& replacement);

    DockPaned outer_{Gtk::ORIENTATION_HORIZONTAL};
    DockPaned inner_{Gtk::ORIENTATION_HORIZONTAL};
    DockPaned centre_{Gtk::ORIENTATION_VERTICAL};
    DockHolder left_;
    DockHolder right_;
    DockHolder top_;
    DockHolder bottom_;
    std::vector<PanelView*> panels_;
};

} // namespace Tav
