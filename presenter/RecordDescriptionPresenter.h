#pragma once

#include "model/CurrentLoad.h"
#include "model/PackageListModel.h"
#include "model/SclConfiguration.h"
#include "platform/view/IPresenter.h"
#include "platform/view/UpdateViewGuard.h"
#include "presenter/EthernetDescPresenter.h"
#include "presenter/GooseDescPresenter.h"
#include "presenter/OtherDescPresenter.h"
#include "presenter/SclDescPresenter.h"
#include "presenter/SvDescPresenter.h"
#include "view/RecordDescriptionView.h"

#include <memory>
#include <sigc++/connection.h>
#include <thread>

namespace TavNA {

// Describes the picked stream: Ethernet, its protocol, then the package count.
class RecordDescriptionPresenter : public Tav::IPresenter {
public:
    // With configuration files open in `scl`, a section tells the stream's
    // control block and what the stream contradicts of it.
    RecordDescriptionPresenter(PackageListModel& model, CurrentLoad& load,
                               const SclConfiguration* scl = nullptr);
    RecordDescriptionPresenter(const RecordDescriptionPresenter&) = delete;
    RecordDescriptionPresenter& operator=(const RecordDescriptionPresenter&) = delete;
    ~RecordDescriptionPresenter() override;

    Tav::IView* getView() override { return view.get(); }
    RecordDescriptionView& getViewObj() { return *view; }
    EthernetDescPresenter& getEthernet() { return ethernet; }
    SvDescPresenter& getSv() { return sv; }
    GooseDescPresenter& getGoose() { return goose; }
    OtherDescPresenter& getOther() { return other; }
    SclDescPresenter& getScl() { return sclSection; }

private:
    void _onGroupSelected(const IGroup* group);
    void _show(const IGroup* group);
    template <typename Record> void _showScl(const Record& record);

    [[maybe_unused]] PackageListModel& model;
    CurrentLoad& load;
    const SclConfiguration* scl;
    std::unique_ptr<RecordDescriptionView> view;
    EthernetDescPresenter ethernet;
    SvDescPresenter sv;
    GooseDescPresenter goose;
    OtherDescPresenter other;
    SclDescPresenter sclSection;
    sigc::connection selectedConnection;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> liveness;
};

} // namespace TavNA
