#include "view/TextTable.h"

namespace TavNA {

TextTable::TextTable(const std::vector<std::string>& titles) : columns_(titles.size()) {
    for (auto& column : columns_)
        record_.add(column);
    store_ = Gtk::ListStore::create(record_);
    set_model(store_);
    for (std::size_t c = 0; c < titles.size(); ++c) {
        append_column(titles[c], columns_[c]);
        // Figures line up on their right edge; names stay left.
        if (c > 0)
            if (auto* cell = get_column_cell_renderer(static_cast<int>(c)))
                cell->property_xalign() = 1.0;
    }
    set_headers_clickable(false);
    set_enable_search(false);
}

void TextTable::setRows(const std::vector<std::vector<std::string>>& rows) {
    store_->clear();
    for (const auto& row : rows) {
        auto it = store_->append();
        for (std::size_t c = 0; c < columns_.size() && c < row.size(); ++c)
            (*it)[columns_[c]] = row[c];
    }
    shown_ = rows;
}

} // namespace TavNA
