#pragma once

#include <gtkmm/liststore.h>
#include <gtkmm/treemodelcolumn.h>
#include <gtkmm/treeview.h>

#include <string>
#include <vector>

namespace TavNA {

// A read-only table of text under titled columns, selectable for copying.
class TextTable : public Gtk::TreeView {
public:
    explicit TextTable(const std::vector<std::string>& titles);

    void setRows(const std::vector<std::vector<std::string>>& rows);
    const std::vector<std::vector<std::string>>& rows() const { return shown_; }

private:
    Gtk::TreeModelColumnRecord record_;
    std::vector<Gtk::TreeModelColumn<Glib::ustring>> columns_;
    Glib::RefPtr<Gtk::ListStore> store_;
    std::vector<std::vector<std::string>> shown_;
};

} // namespace TavNA
