#pragma once

#include "platform/view/ExtendedExpander.h"

#include <gtkmm/grid.h>
#include <gtkmm/label.h>
#include <memory>
#include <string>
#include <vector>

namespace TavNA {

// A section of the record description: a header and a grid of name/value rows.
class DescSection : public Tav::ExtendedExpander {
public:
    explicit DescSection(const std::string& header);

    // Row texts by position, for whoever reads the section back.
    std::string getRowName(int row) const;
    std::string getRowValue(int row) const;
    bool isRowVisible(int row) const;

protected:
    // Rows are appended in order; a hidden row stays hidden through show_all().
    void addRow(const std::string& name, bool hidden = false);
    void setValue(int row, const std::string& value);
    void showRow(int row);
    void hideRow(int row);
    void clearValues();

private:
    struct Row {
        Gtk::Label name;
        Gtk::Label value;
    };

    Gtk::Label header;
    Gtk::Grid grid;
    std::vector<std::unique_ptr<Row>> rows;
};

} // namespace TavNA
