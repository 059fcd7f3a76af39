#include "view/SclDescView.h"

namespace TavNA {

SclDescView::SclDescView() : DescSection("SCL") {
    addRow("Блок управления: ");
    addRow("Расхождения: ", true);
}

void SclDescView::setControlBlock(const std::string& text) {
    setValue(ControlBlock, text);
}

void SclDescView::setMismatches(const std::string& lines) {
    setValue(Mismatches, lines);
    if (lines.empty())
        hideRow(Mismatches);
    else
        showRow(Mismatches);
}

} // namespace TavNA
