#pragma once

#include "model/IGroup.h"
#include "model/SignalRelay.h"
#include "model/TickRelayList.h"

#include <sigc++/functors/mem_fun.h>
#include <sigc++/signal.h>
#include <vector>

namespace TavNA {

// One stream: the database records it stands for (not owned) and its
// channels. A tick of one of its channels leaves it carrying the stream too.
template <typename Self, typename ChannelT, typename RecordT> class BasicGroup : public IGroup {
public:
    using Channel = ChannelT;
    using Channels = TickRelayList<ChannelT, ChannelT*>;
    using Record = RecordT;
    using Records = std::vector<const RecordT*>;

    BasicGroup() {
        channels.signalChannelSelected.connect(
            sigc::mem_fun(*this, &BasicGroup::_onChannelSelected));
        channels.signalChannelUnSelected.connect(
            sigc::mem_fun(*this, &BasicGroup::_onChannelUnSelected));
    }
    BasicGroup(const BasicGroup&) = delete;
    BasicGroup& operator=(const BasicGroup&) = delete;

    void addRecord(const RecordT* record) { records.push_back(record); }
    const Records& getRecords() const { return records; }

    Channels& getChannels() { return channels; }
    const Channels& getChannels() const { return channels; }

private:
    Records records;
    Channels channels;

public:
    sigc::signal<void(ChannelT*, Self*)> signalChannelSelected;
    sigc::signal<void(ChannelT*, Self*)> signalChannelUnSelected;

private:
    void _onChannelSelected(ChannelT* channel) {
        relay(signalChannelSelected, channel, static_cast<Self*>(this));
    }
    void _onChannelUnSelected(ChannelT* channel) {
        relay(signalChannelUnSelected, channel, static_cast<Self*>(this));
    }
};

} // namespace TavNA
