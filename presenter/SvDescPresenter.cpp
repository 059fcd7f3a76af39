#include "presenter/SvDescPresenter.h"

#include "model/Converters.h"

namespace TavNA {

void SvDescPresenter::fill(const SvGroup* group) {
    const auto& record = *group->getSvs().back();
    view->clear();
    view->setSvId(record.svId);
    view->setAppId(Converters::intToHexString(record.appId));
    view->setSimulation(record.simulation);
}

} // namespace TavNA
