#include "presenter/RecordDescriptionPresenter.h"

#include <sigc++/functors/mem_fun.h>

namespace TavNA {

RecordDescriptionPresenter::RecordDescriptionPresenter(PackageListModel& model)
    : model(model), view(std::make_unique<RecordDescriptionView>()),
      liveness(Tav::UpdateViewGuard::makeToken()), uiThread(std::this_thread::get_id()) {
    selectedConnection = model.signalGroupSelected.connect(
        sigc::mem_fun(*this, &RecordDescriptionPresenter::_onGroupSelected));
}

RecordDescriptionPresenter::~RecordDescriptionPresenter() {
    selectedConnection.disconnect();
}

// A rebuild of the stream tree clears the pick from the parse worker; only the
// interface thread may touch the panel, so that clearing is posted. A clearing
// carries no group, so nothing of the tree being freed travels with it.
void RecordDescriptionPresenter::_onGroupSelected(const IGroup* group) {
    if (std::this_thread::get_id() == uiThread) {
        _show(group);
        return;
    }
    if (group == nullptr)
        Tav::UpdateViewGuard::safeBeginUpdateView(liveness, [this] { _show(nullptr); });
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
        other.fillSvGroup(svGroup);
    } else if (const auto* gooseGroup = dynamic_cast<const GooseGroup*>(group)) {
        ethernet.fillGooseGroup(gooseGroup);
        view->setView(ethernet.getView());
        goose.fill(gooseGroup);
        view->setView(goose.getView());
        other.fillGooseGroup(gooseGroup);
    } else {
        return;
    }
    view->setView(other.getView());
}

} // namespace TavNA
