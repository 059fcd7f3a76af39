#pragma once

#include "view/IDiagnosticsView.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/listbox.h>
#include <gtkmm/scrolledwindow.h>

namespace TavNA {

// The checks' findings: a heading over a list of lines, of which the events
// can be activated (double click or Enter).
class DiagnosticsView : public IDiagnosticsView, public Gtk::Box {
public:
    DiagnosticsView();
    void show(const std::string& heading, const std::vector<DiagnosticsLine>& lines,
              std::size_t firstEvent) override;

    // What the panel shows, for whoever reads it back.
    std::string getHeading() const { return heading.get_text(); }
    std::vector<DiagnosticsLine> getLines() const { return shown; }
    // Activates the event row at `index` among the events, as the user would.
    void activateEvent(std::size_t index);

private:
    void _onRowActivated(Gtk::ListBoxRow* row);

    Gtk::Label heading;
    // A thousand events must not make the window grow: the list scrolls.
    Gtk::ScrolledWindow scroller;
    Gtk::ListBox list;
    std::vector<DiagnosticsLine> shown;
    std::size_t firstEvent = 0;
};

} // namespace TavNA
