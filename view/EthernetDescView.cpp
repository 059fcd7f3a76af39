#include "view/EthernetDescView.h"

namespace TavNA {

EthernetDescView::EthernetDescView() : DescSection("Сетевые параметры") {
    addRow("Приемник: ");
    addRow("Источник: ");
    addRow("HSR ID: ", true);
    addRow("HSR Line: ", true);
    addRow("VLAN ID: ", true);
    addRow("PRP ID: ", true);
    addRow("PRP Line: ", true);
}

void EthernetDescView::_setTagRow(Row row, const std::string& text) {
    setValue(row, text);
    showRow(row);
}

void EthernetDescView::setSrcMac(const std::string& text) {
    setValue(SrcMac, text);
}
void EthernetDescView::setDstMac(const std::string& text) {
    setValue(DstMac, text);
}
void EthernetDescView::setHsrId(const std::string& text) {
    _setTagRow(HsrId, text);
}
void EthernetDescView::setHsrLine(const std::string& text) {
    _setTagRow(HsrLine, text);
}
void EthernetDescView::setVlanId(const std::string& text) {
    _setTagRow(VlanId, text);
}
void EthernetDescView::setPrpId(const std::string& text) {
    _setTagRow(PrpId, text);
}
void EthernetDescView::setPrpLine(const std::string& text) {
    _setTagRow(PrpLine, text);
}

void EthernetDescView::clear() {
    clearValues();
    for (Row row : {HsrId, HsrLine, VlanId, PrpId, PrpLine})
        hideRow(row);
}

} // namespace TavNA
