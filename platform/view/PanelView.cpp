#include "platform/view/PanelView.h"

#include <algorithm>
#include <gtkmm/paned.h>

namespace Tav {

std::optional<int> preferredExtentOf(const Gtk::Widget* widget, Gtk::Orientation orientation) {
    if (widget == nullptr || !widget->get_visible())
        return std::nullopt;
    if (auto* extent = dynamic_cast<const IPreferredExtent*>(widget))
        return extent->preferredExtent(orientation);
    return std::nullopt;
}

PanelView::PanelView(const std::string& title, Gtk::Widget* content)
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL), title_(title) {
    get_style_context()->add_class("panel");
    titleBar_.get_style_context()->add_class("panelTitle");
    titleLabel_.set_text(title);
    titleLabel_.set_halign(Gtk::ALIGN_START);
    titleLabel_.set_margin_start(6);
    collapseImage_.set_from_icon_name("pan-down-symbolic", Gtk::ICON_SIZE_MENU);
    collapseButton_.set_image(collapseImage_);
    collapseButton_.set_relief(Gtk::RELIEF_NONE);
    collapseButton_.set_tooltip_text("Свернуть");
    collapseButton_.signal_clicked().connect(sigc::mem_fun(*this, &PanelView::_onCollapseClicked));
    titleBar_.pack_start(titleLabel_, true, true);
    titleBar_.pack_end(collapseButton_, false, false);
    pack_start(titleBar_, false, false);

    revealer_.set_transition_type(Gtk::REVEALER_TRANSITION_TYPE_NONE);
    revealer_.set_reveal_child(true);
    // The content's natural width still reaches the layout, so side columns
    // start wide enough for their text; its height does not, so a long list
    // scrolls instead of stretching the window.
    scroller_.set_policy(Gtk::POLICY_AUTOMATIC, Gtk::POLICY_AUTOMATIC);
    scroller_.set_propagate_natural_width(true);
    scroller_.set_propagate_natural_height(false);
    scroller_.set_hexpand(true);
    scroller_.set_vexpand(true);
    if (content != nullptr) {
        content->set_hexpand(true);
        content->set_vexpand(true);
        if (dynamic_cast<Gtk::Scrollable*>(content) != nullptr) {
            scroller_.add(*content);
        } else {
            viewport_ = std::make_unique<Gtk::Viewport>(scroller_.get_hadjustment(),
                                                        scroller_.get_vadjustment());
            viewport_->set_shadow_type(Gtk::SHADOW_NONE);
            viewport_->add(*content);
            scroller_.add(*viewport_);
        }
    }
    revealer_.add(scroller_);
    pack_start(revealer_, true, true);
}

PanelView::~PanelView() {
    releaseContent();
}

void PanelView::releaseContent() {
    if (viewport_ != nullptr && viewport_->get_child() != nullptr)
        viewport_->remove();
    else if (viewport_ == nullptr && scroller_.get_child() != nullptr)
        scroller_.remove();
}

void PanelView::setMinimumSize(int width, int height) {
    minWidth_ = std::max(0, width);
    minHeight_ = std::max(0, height);
    applyMinimumSize();
}

void PanelView::setPreferredSize(int width, int height) {
    preferredWidth_ = std::max(0, width);
    preferredHeight_ = std::max(0, height);
    queue_resize();
}

std::optional<int> PanelView::preferredExtent(Gtk::Orientation orientation) const {
    const int extent =
        orientation == Gtk::ORIENTATION_HORIZONTAL ? preferredWidth_ : preferredHeight_;
    if (extent <= 0)
        return std::nullopt;
    return extent;
}

void PanelView::get_preferred_width_vfunc(int& minimum, int& natural) const {
    Gtk::Box::get_preferred_width_vfunc(minimum, natural);
    natural = std::max({natural, minimum, preferredWidth_});
}

void PanelView::get_preferred_height_vfunc(int& minimum, int& natural) const {
    Gtk::Box::get_preferred_height_vfunc(minimum, natural);
    if (!collapsed_)
        natural = std::max({natural, minimum, preferredHeight_});
}

void PanelView::applyMinimumSize() {
    // A collapsed panel shrinks to its title bar whatever its minimum.
    if (collapsed_)
        set_size_request(-1, -1);
    else
        set_size_request(minWidth_ > 0 ? minWidth_ : -1, minHeight_ > 0 ? minHeight_ : -1);
}

void PanelView::setCollapsed(bool collapsed) {
    if (collapsed == collapsed_)
        return;
    collapsed_ = collapsed;
    revealer_.set_reveal_child(!collapsed);
    collapseImage_.set_from_icon_name(collapsed ? "pan-end-symbolic" : "pan-down-symbolic",
                                      Gtk::ICON_SIZE_MENU);
    collapseButton_.set_tooltip_text(collapsed ? "Развернуть" : "Свернуть");
    applyMinimumSize();
    moveDivider();
}

// A divider keeps its place when a child shrinks, so a collapsed panel would
// leave a hole: hand its room to the neighbour, and take it back on restore.
void PanelView::moveDivider() {
    auto* paned = dynamic_cast<Gtk::Paned*>(get_parent());
    if (paned == nullptr)
        return;
    if (!collapsed_) {
        if (dividerBeforeCollapse_)
            paned->set_position(*dividerBeforeCollapse_);
        dividerBeforeCollapse_.reset();
        return;
    }
    dividerBeforeCollapse_ = paned->get_position();
    const bool vertical = paned->get_orientation() == Gtk::ORIENTATION_VERTICAL;
    int barMin = 0;
    int barNatural = 0;
    if (vertical)
        titleBar_.get_preferred_height(barMin, barNatural);
    else
        titleBar_.get_preferred_width(barMin, barNatural);
    if (paned->get_child1() == this)
        paned->set_position(barNatural);
    else
        paned->set_position(paned->property_max_position().get_value() - barNatural);
}

void PanelView::_onCollapseClicked() {
    setCollapsed(!collapsed_);
}

} // namespace Tav
