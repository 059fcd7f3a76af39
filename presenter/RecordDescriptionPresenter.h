#pragma once

#include "model/CurrentLoad.h"
#include "model/PackageListModel.h"
#include "platform/view/IPresenter.h"
#include "platform/view/UpdateViewGuard.h"
#include "presenter/EthernetDescPresenter.h"
#include "presenter/GooseDescPresenter.h"
#include "presenter/OtherDescPresenter.h"
#include "presenter/SvDescPresenter.h"
#include "view/RecordDescriptionView.h"

#include <memory>
#include <sigc++/connection.h>
#include <thread>

namespace TavNA {

// Describes the picked stream: Ethernet, its protocol, then the package count.
class RecordDescriptionPresenter : public Tav::IPresenter {
public:
    RecordDescriptionPresenter(PackageListModel& model, CurrentLoad& load);
    RecordDescriptionPresenter(const RecordDescriptionPresenter&) = delete;
    RecordDescriptionPresenter& operator=(const RecordDescriptionPresenter&) = delete;
    ~RecordDescriptionPresenter() override;

    Tav::IView* getView() override { return view.get(); }
    RecordDescriptionView& getViewObj() { return *view; }
    EthernetDescPresenter& getEthernet() { return ethernet; }
    SvDescPresenter& getSv() { return sv; }
    GooseDescPresenter& getGoose() { return goose; }
    OtherDescPresenter& getOther() { return other; }

private:
    void _onGroupSelected(const IGroup* group);
    void _show(const IGroup* group);

    [[maybe_unused]] PackageListModel& model;
    CurrentLoad& load;
    std::unique_ptr<RecordDescriptionView> view;
    EthernetDescPresenter ethernet;
    SvDescPresenter sv;
    GooseDescPresenter goose;
    OtherDescPresenter other;
    sigc::connection selectedConnection;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> liveness;
};

} // namespace TavNA
