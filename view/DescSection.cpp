#include "view/DescSection.h"

namespace TavNA {

DescSection::DescSection(const std::string& headerText)
    : Tav::ExtendedExpander(false), header(headerText) {
    set_expanded(true);
    header.get_style_context()->add_class("header");
    header.set_justify(Gtk::JUSTIFY_CENTER);
    header.set_hexpand(true);
    set_label_widget(header);
    add(grid);
}

void DescSection::addRow(const std::string& name, bool hidden) {
    auto row = std::make_unique<Row>();
    row->name.set_text(name);
    for (Gtk::Label* label : {&row->name, &row->value}) {
        label->get_style_context()->add_class("item");
        label->set_halign(Gtk::ALIGN_START);
        label->set_no_show_all(hidden);
    }
    row->name.set_hexpand(false);
    row->value.set_hexpand(true);
    const int top = static_cast<int>(rows.size());
    grid.attach(row->name, 0, top);
    grid.attach(row->value, 1, top);
    rows.push_back(std::move(row));
}

void DescSection::setValue(int row, const std::string& value) {
    rows.at(row)->value.set_text(value);
}

void DescSection::showRow(int row) {
    for (Gtk::Label* label : {&rows.at(row)->name, &rows.at(row)->value}) {
        label->set_no_show_all(false);
        label->show();
    }
}

void DescSection::hideRow(int row) {
    for (Gtk::Label* label : {&rows.at(row)->name, &rows.at(row)->value}) {
        label->set_no_show_all(true);
        label->hide();
    }
}

void DescSection::clearValues() {
    for (auto& row : rows)
        row->value.set_text("");
}

std::string DescSection::getRowName(int row) const {
    return rows.at(row)->name.get_text();
}

std::string DescSection::getRowValue(int row) const {
    return rows.at(row)->value.get_text();
}

bool DescSection::isRowVisible(int row) const {
    return rows.at(row)->name.get_visible() && rows.at(row)->value.get_visible();
}

} // namespace TavNA
