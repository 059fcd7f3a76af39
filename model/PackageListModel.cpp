#include "model/PackageListModel.h"

#include "model/SignalRelay.h"

#include <sigc++/functors/mem_fun.h>

namespace TavNA {

namespace {

// One group per record. A protocol with anything in its group filter list is
// left out whole: the filter hides protocols, not single streams.
template <typename Node, typename Records>
void fill(Node& node, const Records& records, std::uint64_t count, bool hidden) {
    if (count == 0 || hidden || records.empty())
        return;
    for (const auto& record : records) {
        auto& group = node.getGroups().add(std::make_unique<typename Node::Group>());
        group.addRecord(&record);
    }
}

} // namespace

PackageListModel::PackageListModel()
    : svProto(std::make_unique<SvProto>()), gooseProto(std::make_unique<GooseProto>()) {}

PackageListModel::~PackageListModel() = default;

void PackageListModel::select(const IGroup* group) {
    selectedGroup = group;
    signalGroupSelected.emit(group);
}

void PackageListModel::update(TavIec61850Parser::Db& db, TavIec61850Parser::Filter&,
                              GroupFilter& groupFilter) {
    // Listeners drop the picked stream before the tree it points into goes.
    select(nullptr);

    svProto = std::make_unique<SvProto>();
    fill(*svProto, db.svProto.svs, db.svProto.getSvCount(), !groupFilter.svs.empty());
    svProto->signalChannelSelected.connect(
        sigc::mem_fun(*this, &PackageListModel::_onSvChannelSelected));
    svProto->signalChannelUnSelected.connect(
        sigc::mem_fun(*this, &PackageListModel::_onSvChannelUnSelected));

    gooseProto = std::make_unique<GooseProto>();
    fill(*gooseProto, db.gooseProto.gooses, db.gooseProto.getGooseCount(),
         !groupFilter.gooses.empty());
    gooseProto->signalChannelSelected.connect(
        sigc::mem_fun(*this, &PackageListModel::_onGooseChannelSelected));
    gooseProto->signalChannelUnSelected.connect(
        sigc::mem_fun(*this, &PackageListModel::_onGooseChannelUnSelected));

    signalUpdated.emit();
}

void PackageListModel::_onSvChannelSelected(SvChannel* channel, SvGroup* group) {
    relay(signalSvChannelSelected, channel, group);
}

void PackageListModel::_onSvChannelUnSelected(SvChannel* channel, SvGroup* group) {
    relay(signalSvChannelUnSelected, channel, group);
}

void PackageListModel::_onGooseChannelSelected(GooseChannel* channel, GooseGroup* group) {
    relay(signalGooseChannelSelected, channel, group);
}

void PackageListModel::_onGooseChannelUnSelected(GooseChannel* channel, GooseGroup* group) {
    relay(signalGooseChannelUnSelected, channel, group);
}

} // namespace TavNA
