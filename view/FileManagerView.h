#pragma once

#include "view/IFileManagerView.h"

#include <gtkmm/box.h>
#include <gtkmm/grid.h>

namespace TavNA {

class FileManagerView : public IFileManagerView, public Gtk::Box {
public:
    FileManagerView();

    void setRowView(Tav::IView* name, Tav::IView* removeButton) override;

    Gtk::Grid& rows() { return grid; }
    unsigned rowCount() const { return rowCounter; }

private:
    Gtk::Grid grid;
    // Only grows: a removed file leaves its row empty and rows are never
    // renumbered, so a late removal cannot land on another file's row.
    unsigned rowCounter = 0;
};

} // namespace TavNA
