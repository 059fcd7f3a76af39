#include "presenter/GooseDescPresenter.h"

#include "model/Converters.h"

namespace TavNA {

void GooseDescPresenter::fill(const GooseGroup* group) {
    const auto& record = *group->getGooses().back();
    view->clear();
    view->setAppId(Converters::intToHexString(record.appId));
    view->setGoCbRef(record.gocbRef);
    view->setDataSet(record.datSet);
    view->setGoId(record.goId);
    view->setSimulation(record.simulation);
}

} // namespace TavNA
