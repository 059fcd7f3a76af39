#include "presenter/EthernetDescPresenter.h"

#include <string>

namespace TavNA {

void EthernetDescPresenter::fillSvGroup(const SvGroup* group) {
    _fill(*group->getSvs().back());
}

void EthernetDescPresenter::fillGooseGroup(const GooseGroup* group) {
    _fill(*group->getGooses().back());
}

// The HSR and PRP id rows are never filled: only the line tells streams apart.
template <typename Record> void EthernetDescPresenter::_fill(const Record& record) {
    view->clear();
    view->setDstMac(record.dstMac);
    view->setSrcMac(record.srcMac);
    if (record.hsr && record.hsr->line)
        view->setHsrLine(std::string(1, *record.hsr->line));
    if (record.vlan && record.vlan->id)
        view->setVlanId(std::to_string(*record.vlan->id));
    if (record.prp && record.prp->line)
        view->setPrpLine(std::string(1, *record.prp->line));
}

} // namespace TavNA
