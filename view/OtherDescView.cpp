#include "view/OtherDescView.h"

namespace TavNA {

OtherDescView::OtherDescView() : DescSection("Другое") {
    addRow("Количество пакетов: ");
}

void OtherDescView::clear() {
    clearValues();
}
void OtherDescView::setPkgCount(const std::string& text) {
    setValue(PkgCount, text);
}

} // namespace TavNA
