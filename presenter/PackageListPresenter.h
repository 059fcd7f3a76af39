#pragma once

#include "model/CurrentLoad.h"
#include "model/PackageListModel.h"
#include "platform/common/PointerConnectionsDispatcher.h"
#include "platform/view/IPresenter.h"
#include "platform/view/UpdateViewGuard.h"
#include "presenter/GooseStreamPresenter.h"
#include "presenter/SvStreamPresenter.h"
#include "view/PackageListView.h"

#include <memory>
#include <vector>

namespace TavNA {

// The stream list: rebuilt on every model update, at most one stream picked.
// A rebuild on the interface thread is done before control returns to the
// main loop, so that no input queued meanwhile reaches an entry whose group
// the update freed.
class PackageListPresenter : public Tav::IPresenter {
public:
    // The list is made again when `scl` changes, its channels named by it.
    PackageListPresenter(PackageListModel& model, CurrentLoad& load,
                         SclConfiguration* scl = nullptr);
    PackageListPresenter(const PackageListPresenter&) = delete;
    PackageListPresenter& operator=(const PackageListPresenter&) = delete;
    ~PackageListPresenter() override;

    Tav::IView* getView() override;
    PackageListView& getViewObj() { return *view; }
    const std::vector<std::unique_ptr<SvStreamPresenter>>& getSvStreams() const {
        return svStreams;
    }
    const std::vector<std::unique_ptr<GooseStreamPresenter>>& getGooseStreams() const {
        return gooseStreams;
    }

private:
    void _onModelUpdated();
    void _rebuild();
    void _retireEntries();
    void _showAbsent();
    void _onSelected(ISelectable* item, const IGroup* group);
    void _stopFillingChannels();
    template <typename Presenter, typename Proto>
    void _addStreams(Proto& proto, std::vector<std::unique_ptr<Presenter>>& presenters,
                     Tav::PointerConnectionsDispatcher& connections,
                     void (IPackageListView::*addStream)(Tav::IView*));

    PackageListModel& model;
    CurrentLoad& load;
    SclConfiguration* scl;
    std::unique_ptr<PackageListView> view;
    std::vector<std::unique_ptr<SvStreamPresenter>> svStreams;
    std::vector<std::unique_ptr<GooseStreamPresenter>> gooseStreams;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> updateGuard;
    Tav::PointerConnectionsDispatcher svConnections;
    Tav::PointerConnectionsDispatcher gooseConnections;
    ISelectable* selectedItem = nullptr;
    sigc::connection updatedConnection;
    sigc::connection sclConnection;
};

} // namespace TavNA
