#include "view/DiagnosticsView.h"

#include <gtkmm/grid.h>

namespace TavNA {

DiagnosticsView::DiagnosticsView() : Gtk::Box(Gtk::ORIENTATION_VERTICAL) {
    set_vexpand(true);
    get_style_context()->add_class("recordDescription");
    heading.get_style_context()->add_class("header");
    heading.set_xalign(0);
    heading.set_line_wrap(true);
    list.set_selection_mode(Gtk::SELECTION_SINGLE);
    list.set_activate_on_single_click(false);
    list.signal_row_activated().connect(sigc::mem_fun(*this, &DiagnosticsView::_onRowActivated));
    pack_start(heading, false, false, 0);
    scroller.set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
    scroller.set_vexpand(true);
    scroller.add(list);
    pack_start(scroller, true, true, 0);
    show_all();
}

void DiagnosticsView::show(const std::string& text, const std::vector<DiagnosticsLine>& lines,
                           std::size_t events) {
    heading.set_text(text);
    // The rows are managed: deleting one takes it out of the list.
    for (Gtk::Widget* child : list.get_children())
        delete child;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        auto* grid = Gtk::make_managed<Gtk::Grid>();
        grid->set_column_spacing(12);
        auto* name = Gtk::make_managed<Gtk::Label>(lines[i].name);
        auto* value = Gtk::make_managed<Gtk::Label>(lines[i].value);
        name->set_xalign(0);
        value->set_xalign(0);
        value->set_line_wrap(true);
        value->set_hexpand(true);
        name->get_style_context()->add_class("item");
        value->get_style_context()->add_class("item");
        grid->attach(*name, 0, 0);
        grid->attach(*value, 1, 0);
        auto* row = Gtk::make_managed<Gtk::ListBoxRow>();
        row->add(*grid);
        row->set_activatable(i >= events);
        list.append(*row);
    }
    shown = lines;
    firstEvent = events;
    show_all();
}

void DiagnosticsView::activateEvent(std::size_t index) {
    if (Gtk::ListBoxRow* row = list.get_row_at_index(static_cast<int>(firstEvent + index)))
        row->activate();
}

void DiagnosticsView::_onRowActivated(Gtk::ListBoxRow* row) {
    if (row == nullptr || !row->get_activatable())
        return;
    const int at = row->get_index();
    if (at >= 0 && static_cast<std::size_t>(at) >= firstEvent)
        signalEventActivated.emit(static_cast<std::size_t>(at) - firstEvent);
}

} // namespace TavNA
