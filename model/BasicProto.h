#pragma once

#include "model/TickRelay.h"
#include "model/TickRelayList.h"

#include <sigc++/functors/mem_fun.h>
#include <string>

namespace TavNA {

// The root of one protocol's streams; the last hop of a tick inside the tree.
template <typename GroupT> class BasicProto : public TickRelay<typename GroupT::Channel*, GroupT*> {
public:
    using Group = GroupT;
    using Channel = typename GroupT::Channel;
    using Groups = TickRelayList<GroupT, Channel*, GroupT*>;

    BasicProto() {
        groups.signalChannelSelected.connect(sigc::mem_fun(*this, &BasicProto::_onChannelSelected));
        groups.signalChannelUnSelected.connect(
            sigc::mem_fun(*this, &BasicProto::_onChannelUnSelected));
    }
    BasicProto(const BasicProto&) = delete;
    BasicProto& operator=(const BasicProto&) = delete;

    // A caption of the node; nothing writes it yet.
    const std::string& getLabel() const { return label; }

    Groups& getGroups() { return groups; }
    const Groups& getGroups() const { return groups; }

private:
    std::string label;
    Groups groups;
};

} // namespace TavNA
