#include "presenter/PackageListPresenter.h"

#include "presenter/StreamOrder.h"

#include <sigc++/functors/mem_fun.h>
#include <string>

namespace TavNA {

namespace {

// Every stream record of the protocol's groups.
template <typename Proto> auto recordsOf(Proto& proto) {
    std::vector<const typename Proto::Group::Record*> records;
    for (const auto& group : proto.getGroups().getItems())
        records.insert(records.end(), group->getRecords().begin(), group->getRecords().end());
    return records;
}

} // namespace

PackageListPresenter::PackageListPresenter(PackageListModel& model, CurrentLoad& load,
                                           SclConfiguration* scl)
    : model(model), load(load), scl(scl), view(std::make_unique<PackageListView>()),
      updateGuard(Tav::UpdateViewGuard::makeToken()) {
    updatedConnection =
        model.signalUpdated.connect(sigc::mem_fun(*this, &PackageListPresenter::_onModelUpdated));
    // A load under way rebuilds the list when it ends; the tree is its
    // worker's until then.
    if (scl)
        sclConnection = scl->signalChanged.connect([this] {
            if (!this->load.isRunning())
                _rebuild();
        });
}

// The model may outlive the panel; the worker must not call into a dead one.
PackageListPresenter::~PackageListPresenter() {
    updatedConnection.disconnect();
    sclConnection.disconnect();
}

Tav::IView* PackageListPresenter::getView() {
    return view.get();
}

void PackageListPresenter::_onModelUpdated() {
    load.deliver(updateGuard, [this] { _rebuild(); });
}

void PackageListPresenter::_rebuild() {
    _stopFillingChannels();
    view->clear();
    _retireEntries();
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
    _showAbsent();
}

void PackageListPresenter::_showAbsent() {
    if (scl == nullptr || scl->files().empty())
        return;
    std::vector<std::string> lines;
    for (const auto* c :
         scl->missing(recordsOf(model.getSvProto()), recordsOf(model.getGooseProto())))
        lines.push_back(std::string(TavScl::kindName(c->kind)) + " " + c->reference + " (" +
                        c->ied + ")");
    view->setAbsent(lines);
}

template <typename Presenter, typename Proto>
void PackageListPresenter::_addStreams(Proto& proto,
                                       std::vector<std::unique_ptr<Presenter>>& presenters,
                                       Tav::PointerConnectionsDispatcher& connections,
                                       void (IPackageListView::*addStream)(Tav::IView*)) {
    // The protocol keeps its groups in no useful order; the list shows them
    // in one a person can scan.
    for (auto* group : inListOrder(proto.getGroups().getItems())) {
        presenters.push_back(std::make_unique<Presenter>(*group, scl));
        Presenter& stream = *presenters.back();
        // A load that begins is about to free the tree the boxes point into.
        stream.setChannelsGuard([this] { return !load.isRunning(); });
        connections.connect(&stream, stream.signalSelected.connect(
                                         sigc::mem_fun(*this, &PackageListPresenter::_onSelected)));
        (view.get()->*addStream)(stream.getView());
    }
}

// The old entries point into the freed tree. Their views have left the panel,
// so no input reaches them; they are destroyed from the queue rather than
// here, since a rebuild may run inside a handler of one of them.
void PackageListPresenter::_retireEntries() {
    selectedItem = nullptr;
    svConnections.disconnectAll();
    gooseConnections.disconnectAll();
    auto retired = std::make_shared<std::pair<decltype(svStreams), decltype(gooseStreams)>>(
        std::move(svStreams), std::move(gooseStreams));
    svStreams.clear();
    gooseStreams.clear();
    Tav::beginUpdateView([retired] {
        retired->first.clear();
        retired->second.clear();
    });
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
