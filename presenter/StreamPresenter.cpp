#include "presenter/StreamPresenter.h"

#include "model/Converters.h"
#include "model/SvChannelNaming.h"
#include "platform/common/Log.h"
#include "platform/parser/GooseParser.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/SvParser.h"

#include <sigc++/functors/mem_fun.h>

namespace TavNA {

namespace {

template <typename Record> std::string ethernetLines(const Record& record) {
    return "Src mac: " + record.srcMac + "\nDst mac: " + record.dstMac +
           "\nAppId: " + Converters::intToHexString(record.appId);
}

// The first frame of the stream: first file, first package; nothing known
// gives an empty path, which the parser refuses.
template <typename Record> std::pair<std::string, unsigned long long> firstFrame(const Record& r) {
    if (r.files.empty())
        return {"", 0};
    const auto& file = *r.files.begin();
    return {file.path, file.packages.empty() ? 0 : file.packages.front().offset};
}

const std::string& streamId(const TavIec61850Parser::Sv& record) {
    return record.svId;
}
const std::string& streamId(const TavIec61850Parser::Goose& record) {
    return record.goId;
}

// Names from the data set replace the names by place, as far as both go.
template <typename Channels, typename Record>
void nameByConfiguration(const Channels& channels, const Record& record,
                         const SclConfiguration& scl) {
    const std::vector<std::string> names = scl.channelNames(record);
    const std::vector<std::string> hints = scl.channelDescriptions(record);
    for (std::size_t i = 0; i < channels.size() && i < names.size(); ++i) {
        channels[i]->setName(names[i]);
        channels[i]->setDescription(names[i] + " | " + streamId(record));
        if (i < hints.size())
            channels[i]->setHint(hints[i]);
    }
}

} // namespace

template <> std::string SvStreamTraits::caption(const Record& record, std::int32_t count) {
    return record.dstMac + " " + record.svId + " | " + Converters::formatNumberReadable(count);
}

template <> std::string SvStreamTraits::tooltip(const Record& record, std::int32_t count) {
    return ethernetLines(record) + "\nSvId: " + record.svId +
           "\nPkgCount: " + std::to_string(count);
}

template <>
std::size_t SvStreamTraits::readValueCount(const std::string& path, unsigned long long offset) {
    const auto asdus = TavIec61850Parser::SvParser::parseASDUFromFile(path, offset);
    return asdus.empty() ? 0 : asdus.front().values.size();
}

template <> void SvStreamTraits::nameChannels(Group& group, const Record& record) {
    const auto& items = group.getChannels().getItems();
    for (std::size_t i = 0; i < items.size(); ++i) {
        SvChannel& channel = *items[i];
        const SvChannelLabel label = svChannelLabel(i, items.size(), record.svId);
        channel.setIndex(i);
        channel.setSourceType(label.source);
        channel.setPhase(label.phase);
        channel.setName(label.name);
        channel.setDescription(label.description);
    }
}

template <> std::string GooseStreamTraits::caption(const Record& record, std::int32_t count) {
    return record.dstMac + " " + record.goId + " | " + Converters::formatNumberReadable(count);
}

template <> std::string GooseStreamTraits::tooltip(const Record& record, std::int32_t count) {
    return ethernetLines(record) + "\ngoId: " + record.goId + "\nGoCbRef: " + record.gocbRef +
           "\nPkgCount: " + std::to_string(count);
}

template <>
std::size_t GooseStreamTraits::readValueCount(const std::string& path, unsigned long long offset) {
    using TavIec61850Parser::GooseParser;
    const auto pdu = GooseParser::parseGoosePDUFromFile(path, offset);
    return GooseParser::parseBooleanValues(pdu.data).size();
}

template <> void GooseStreamTraits::nameChannels(Group& group, const Record& record) {
    for (const auto& channel : group.getChannels().getItems()) {
        const std::string name = std::to_string(channel->getIndex() + 1);
        channel->setName(name);
        channel->setDescription(name + " | " + record.goId);
    }
}

template <typename Traits>
StreamPresenter<Traits>::StreamPresenter(Group& group, const SclConfiguration* scl)
    : group(group), scl(scl), view(std::make_unique<View>()) {
    const auto& record = *group.getRecords().back();
    const auto count = static_cast<std::int32_t>(packageCount(record));
    const bool unknown = scl && !scl->files().empty() && !scl->check(record);
    view->setName(Traits::caption(record, count) + (unknown ? " | нет в SCL" : ""));
    view->setNameTooltip(Traits::tooltip(record, count));
    view->addView(channels.getView());
    view->signalSelected.connect(sigc::mem_fun(*this, &StreamPresenter::_onSelected));
}

template <typename Traits> void StreamPresenter<Traits>::_onSelected() {
    _createChannels();
    signalSelected.emit(view.get(), &group);
}

template <typename Traits> void StreamPresenter<Traits>::_createChannels() {
    if (channelsShown)
        return;
    auto& collection = group.getChannels();
    const auto& record = *group.getRecords().back();
    // A list made again over the same tree (a configuration opened) finds
    // the channels made: it names and shows them again.
    if (collection.empty()) {
        const auto [path, offset] = firstFrame(record);
        std::size_t count = 0;
        try {
            count = Traits::readValueCount(path, offset);
        } catch (const TavIec61850Parser::ParseError& error) {
            // The file went away or changed since it was parsed: the stream
            // stays pickable without channels, and the next pick tries again.
            TavLog::Log::writeError(error.what());
            return;
        }
        for (std::size_t i = 0; i < count; ++i) {
            auto& channel = collection.add(std::make_unique<typename Group::Channel>());
            channel.setIndex(i);
            channel.setName("");
        }
    }
    channelsShown = true;
    Traits::nameChannels(group, record);
    if (scl)
        nameByConfiguration(collection.getItems(), record, *scl);
    std::vector<typename Group::Channel*> made;
    made.reserve(collection.getItems().size());
    for (const auto& channel : collection.getItems())
        made.push_back(channel.get());
    channels.fill(std::move(made), channelsAlive);
}

template class StreamPresenter<SvStreamTraits>;
template class StreamPresenter<GooseStreamTraits>;

} // namespace TavNA
