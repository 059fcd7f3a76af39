#pragma once

#include "model/TickRelay.h"
#include "platform/common/PointerConnectionsDispatcher.h"

#include <cstddef>
#include <memory>
#include <sigc++/functors/mem_fun.h>
#include <vector>

namespace TavNA {

// An owned, ordered list of channels or of streams that passes their ticks on:
// a channel collection (Args: the channel) or a group collection (Args: the
// channel and its stream).
template <typename ItemT, typename... Args> class TickRelayList : public TickRelay<Args...> {
public:
    using Item = ItemT;
    using Items = std::vector<std::unique_ptr<ItemT>>;

    TickRelayList() = default;
    TickRelayList(const TickRelayList&) = delete;
    TickRelayList& operator=(const TickRelayList&) = delete;

    // Takes the item and passes its ticks on from now.
    ItemT& add(std::unique_ptr<ItemT> item) {
        ItemT& added = *item;
        items.push_back(std::move(item));
        selectedConnections.connect(&added, _selectedOf(added).connect(sigc::mem_fun(
                                                *this, &TickRelayList::_onChannelSelected)));
        unSelectedConnections.connect(&added, _unSelectedOf(added).connect(sigc::mem_fun(
                                                  *this, &TickRelayList::_onChannelUnSelected)));
        return added;
    }

    const Items& getItems() const { return items; }
    std::size_t size() const { return items.size(); }
    bool empty() const { return items.empty(); }

private:
    // A channel says it was ticked; a stream says one of its channels was.
    static auto& _selectedOf(ItemT& item) {
        if constexpr (requires { item.signalSelected; })
            return item.signalSelected;
        else
            return item.signalChannelSelected;
    }
    static auto& _unSelectedOf(ItemT& item) {
        if constexpr (requires { item.signalUnSelected; })
            return item.signalUnSelected;
        else
            return item.signalChannelUnSelected;
    }

    Items items;
    // Declared last so that the connections are cut before the items go.
    Tav::PointerConnectionsDispatcher selectedConnections;
    Tav::PointerConnectionsDispatcher unSelectedConnections;
};

} // namespace TavNA
