#include "presenter/RecordDescriptionPresenter.h"

#include <sigc++/functors/mem_fun.h>

namespace TavNA {

RecordDescriptionPresenter::RecordDescriptionPresenter(PackageListModel& model, CurrentLoad& load,
                                                       const SclConfiguration* scl)
    : model(model), load(load), scl(scl), view(std::make_unique<RecordDescriptionView>()),
      liveness(Tav::UpdateViewGuard::makeToken()) {
    selectedConnection = model.signalGroupSelected.connect(
        sigc::mem_fun(*this, &RecordDescriptionPresenter::_onGroupSelected));
}

RecordDescriptionPresenter::~RecordDescriptionPresenter() {
    selectedConnection.disconnect();
}

// A rebuild of the stream tree clears the pick from the parse worker. Only a
// clearing comes from there, so nothing of the tree being freed travels.
void RecordDescriptionPresenter::_onGroupSelected(const IGroup* group) {
    load.deliver(liveness, [this, group] { _show(group); });
}

// Each section is filled before it is shown, so it never flashes old values.
void RecordDescriptionPresenter::_show(const IGroup* group) {
    view->clear();
    if (group == nullptr)
        return;
    if (const auto* svGroup = dynamic_cast<const SvGroup*>(group)) {
        ethernet.fillSvGroup(svGroup);
        view->setView(ethernet.getView());
        sv.fill(svGroup);
        view->setView(sv.getView());
        _showScl(*svGroup->getSvs().back());
        other.fillSvGroup(svGroup);
    } else if (const auto* gooseGroup = dynamic_cast<const GooseGroup*>(group)) {
        ethernet.fillGooseGroup(gooseGroup);
        view->setView(ethernet.getView());
        goose.fill(gooseGroup);
        view->setView(goose.getView());
        _showScl(*gooseGroup->getGooses().back());
        other.fillGooseGroup(gooseGroup);
    } else {
        return;
    }
    view->setView(other.getView());
}

template <typename Record> void RecordDescriptionPresenter::_showScl(const Record& record) {
    if (scl == nullptr || scl->files().empty())
        return;
    sclSection.fill(scl->check(record));
    view->setView(sclSection.getView());
}

} // namespace TavNA
