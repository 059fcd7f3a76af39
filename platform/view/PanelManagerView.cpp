#include "platform/view/PanelManagerView.h"

#include <algorithm>

namespace Tav {

namespace {

bool isColumn(Positions position) {
    return position == Positions::Left || position == Positions::Right;
}

} // namespace

PanelManagerView::PanelManagerView() : Gtk::Box(Gtk::ORIENTATION_HORIZONTAL) {
    get_style_context()->add_class("panelManager");
    set_hexpand(true);
    set_vexpand(true);
    // Side columns keep their width when the window grows; the centre takes it.
    outer_.pack1(left_, false, false);
    outer_.pack2(inner_, true, false);
    inner_.pack1(centre_, true, false);
    inner_.pack2(right_, false, false);
    outer_.startAtNaturalSize(true, false);
    inner_.startAtNaturalSize(false, true);
    centre_.pack1(top_, true, false);
    centre_.pack2(bottom_, true, false);
    pack_start(outer_, true, true);
}

PanelManagerView::~PanelManagerView() {
    // The contents belong to other presenters and must survive the layout.
    for (PanelView* panel : panels_)
        panel->releaseContent();
}

PanelView* PanelManagerView::addPanel(const std::string& title, Positions position,
                                      Gtk::Widget* content, PanelView* parent) {
    auto* panel = Gtk::manage(new PanelView(title, content));
    const bool known =
        parent != nullptr && std::find(panels_.begin(), panels_.end(), parent) != panels_.end();
    if (known)
        addBeside(*parent, position, *panel);
    else
        addToDock(position, *panel);
    panels_.push_back(panel);
    panel->show_all();
    return panel;
}

DockHolder& PanelManagerView::holderFor(Positions position) {
    switch (position) {
    case Positions::Left:
        return left_;
    case Positions::Right:
        return right_;
    case Positions::Top:
        return top_;
    case Positions::Bottom:
    default:
        return bottom_;
    }
}

// A second panel at a side goes after the ones already there: below in a
// column, to the right in the centre's rows.
void PanelManagerView::addToDock(Positions position, PanelView& panel) {
    DockHolder& holder = holderFor(position);
    Gtk::Widget* old = holder.root();
    if (old == nullptr) {
        holder.setRoot(&panel);
        return;
    }
    auto* split = Gtk::manage(new DockPaned(isColumn(position) ? Gtk::ORIENTATION_VERTICAL
                                                               : Gtk::ORIENTATION_HORIZONTAL));
    old->reference();
    holder.setRoot(nullptr);
    split->pack1(*old, true, false);
    old->unreference();
    split->pack2(panel, true, false);
    holder.setRoot(split);
}

// Beside a parent: left/right split its place across, top/bottom along.
void PanelManagerView::addBeside(PanelView& parent, Positions position, PanelView& panel) {
    const bool across = isColumn(position);
    auto* split = Gtk::manage(
        new DockPaned(across ? Gtk::ORIENTATION_HORIZONTAL : Gtk::ORIENTATION_VERTICAL));
    const bool before = position == Positions::Left || position == Positions::Top;
    parent.reference();
    replaceInParent(parent, *split);
    split->pack1(before ? panel : static_cast<Gtk::Widget&>(parent), true, false);
    split->pack2(before ? static_cast<Gtk::Widget&>(parent) : panel, true, false);
    parent.unreference();
    split->show();
}

void PanelManagerView::replaceInParent(Gtk::Widget& old, Gtk::Widget& replacement) {
    Gtk::Container* container = old.get_parent();
    if (auto* holder = dynamic_cast<DockHolder*>(container)) {
        holder->setRoot(&replacement);
        return;
    }
    if (auto* paned = dynamic_cast<Gtk::Paned*>(container)) {
        const bool first = paned->get_child1() == &old;
        paned->remove(old);
        if (first)
            paned->pack1(replacement, true, false);
        else
            paned->pack2(replacement, true, false);
    }
}

} // namespace Tav
