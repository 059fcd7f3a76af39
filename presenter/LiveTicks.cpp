#include "presenter/LiveTicks.h"

#include "model/TavNaModel.h"
#include "presenter/PackageListPresenter.h"

#include <algorithm>

namespace TavNA {

namespace {

template <typename Group> auto keyOf(const Group& group) {
    return group.getRecords().front()->identifier();
}

template <typename Groups, typename Marks>
void collect(const Groups& groups, const IGroup* picked, Marks& marks) {
    for (const auto& group : groups.getItems()) {
        if (group->getRecords().empty())
            continue;
        if (group.get() == picked)
            marks.picked = keyOf(*group);
        const auto& channels = group->getChannels().getItems();
        for (std::size_t i = 0; i < channels.size(); ++i)
            if (channels[i]->isSelected())
                marks.ticks.emplace_back(keyOf(*group), i);
    }
}

// Picking a stream makes its channels; the picked one is picked last, so
// that it stays the pick.
template <typename Streams, typename Marks> void pickAgain(const Streams& streams, Marks& marks) {
    auto isTicked = [&](const auto& key) {
        return std::any_of(marks.ticks.begin(), marks.ticks.end(),
                           [&](const auto& tick) { return tick.first == key; });
    };
    typename Streams::value_type::element_type* last = nullptr;
    for (const auto& stream : streams) {
        const auto& group = stream->getModel();
        if (group.getRecords().empty())
            continue;
        const auto key = keyOf(group);
        if (marks.picked && key == *marks.picked)
            last = stream.get();
        else if (isTicked(key))
            stream->getViewObj()->select();
    }
    if (last != nullptr)
        last->getViewObj()->select();
}

template <typename Streams, typename Marks>
void tickAgain(const Streams& streams, const Marks& marks) {
    for (const auto& stream : streams) {
        auto& group = stream->getModel();
        if (group.getRecords().empty())
            continue;
        const auto key = keyOf(group);
        const auto& channels = group.getChannels().getItems();
        for (const auto& [tickedStream, index] : marks.ticks)
            if (tickedStream == key && index < channels.size())
                channels[index]->setSelected(true);
    }
}

} // namespace

LiveTicks::LiveTicks(TavNaModel& model, std::function<PackageListPresenter*()> list)
    : model(model), list(std::move(list)) {
    begun = model.getLoad().signalBegun.connect([this] { _remember(); });
    settled = model.getLoad().signalSettled.connect([this] { _restore(); });
}

LiveTicks::~LiveTicks() {
    begun.disconnect();
    settled.disconnect();
}

bool LiveTicks::_live() const {
    return model.getMode() == Mode::Ethernet && model.hasCapture();
}

// The tree is still whole when a load begins: its worker starts after.
void LiveTicks::_remember() {
    sv.clear();
    goose.clear();
    if (!_live())
        return;
    auto& packages = model.getPackageListModel();
    const IGroup* picked = packages.getSelectedGroup();
    collect(packages.getSvProto().getGroups(), picked, sv);
    collect(packages.getGooseProto().getGroups(), picked, goose);
}

// The list was rebuilt before the load settled.
void LiveTicks::_restore() {
    PackageListPresenter* streams = list();
    if (!_live() || streams == nullptr)
        return;
    pickAgain(streams->getSvStreams(), sv);
    pickAgain(streams->getGooseStreams(), goose);
    tickAgain(streams->getSvStreams(), sv);
    tickAgain(streams->getGooseStreams(), goose);
}

} // namespace TavNA
