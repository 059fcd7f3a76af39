#include "presenter/PackageListPresenter.h"

#include "presenter/StreamOrder.h"

#include <sigc++/functors/mem_fun.h>
#include <string>

namespace TavNA {

PackageListPresenter::PackageListPresenter(PackageListModel& model)
    : model(model), view(std::make_unique<PackageListView>()),
      updateGuard(Tav::UpdateViewGuard::makeToken()) {
    updatedConnection =
        model.signalUpdated.connect(sigc::mem_fun(*this, &PackageListPresenter::_onModelUpdated));
}

// The model may outlive the panel; the worker must not call into a dead one.
PackageListPresenter::~PackageListPresenter() {
    updatedConnection.disconnect();
}

Tav::IView* PackageListPresenter::getView() {
    return view.get();
}

// Raised on the parse worker: widgets are touched only by the posted rebuild.
// A rebuild that a newer one overtook would walk a tree already freed.
void PackageListPresenter::_onModelUpdated() {
    const std::uint64_t generation = model.getGeneration();
    Tav::UpdateViewGuard::safeBeginUpdateView(updateGuard, [this, generation] {
        if (generation == model.getGeneration())
            _rebuild();
    });
}

void PackageListPresenter::_rebuild() {
    _stopFillingChannels();
    view->clear();
    auto& svGroups = model.getSvProto().getGroups();
    if (!svGroups.empty()) {
        view->setSVproto("SV (" + std::to_string(svGroups.size()) + ")");
        _addStreams(model.getSvProto(), svStreams, svConnections, &IPackageListView::addSvStream);
    }
    auto& gooseGroups = model.getGooseProto().getGroups();
    if (!gooseGroups.empty()) {
        view->setGooseProto("GOOSE (" + std::to_string(gooseGroups.size()) + ")");
        _addStreams(model.getGooseProto(), gooseStreams, gooseConnections,
                    &IPackageListView::addGooseStream);
    }
}

template <typename Presenter, typename Proto>
void PackageListPresenter::_addStreams(Proto& proto,
                                       std::vector<std::unique_ptr<Presenter>>& presenters,
                                       Tav::PointerConnectionsDispatcher& connections,
                                       void (IPackageListView::*addStream)(Tav::IView*)) {
    // The protocol keeps its groups in no useful order; the list shows them
    // in one a person can scan.
    for (auto* group : inListOrder(proto.getGroups().getItems())) {
        presenters.push_back(std::make_unique<Presenter>(*group));
        Presenter& stream = *presenters.back();
        stream.setChannelsGuard(
            [this, generation = model.getGeneration()] { return _channelsAlive(generation); });
        connections.connect(&stream, stream.signalSelected.connect(
                                         sigc::mem_fun(*this, &PackageListPresenter::_onSelected)));
        (view.get()->*addStream)(stream.getView());
    }
}

// Channel buttons still being made point into the tree of their update. That
// tree goes when a newer update comes, and the worker may replace it only
// once the list has been greyed out, so either ends the making.
bool PackageListPresenter::_channelsAlive(std::uint64_t generation) const {
    return generation == model.getGeneration() && view->is_sensitive();
}

void PackageListPresenter::_stopFillingChannels() {
    for (auto& stream : svStreams)
        stream->getChannelsPresenter().stopFilling();
    for (auto& stream : gooseStreams)
        stream->getChannelsPresenter().stopFilling();
}

// The earlier pick is unmarked even when it is the same entry: the entry marks
// itself again right after this returns.
void PackageListPresenter::_onSelected(ISelectable* item, const IGroup* group) {
    if (selectedItem != nullptr)
        selectedItem->unselect();
    selectedItem = item;
    model.select(group);
}

} // namespace TavNA
