#include "platform/common/PointerConnectionsDispatcher.h"

namespace Tav {

PointerConnectionsDispatcher::~PointerConnectionsDispatcher() {
    disconnectAll();
}

void PointerConnectionsDispatcher::connect(const void* key, const sigc::connection& connection) {
    connections_[key].push_back(connection);
}

void PointerConnectionsDispatcher::disconnect(const void* key) {
    auto it = connections_.find(key);
    if (it == connections_.end())
        return;
    for (auto& c : it->second)
        c.disconnect();
    connections_.erase(it);
}

void PointerConnectionsDispatcher::disconnectAll() {
    for (auto& [key, list] : connections_)
        for (auto& c : list)
            c.disconnect();
    connections_.clear();
}

std::size_t PointerConnectionsDispatcher::size() const {
    std::size_t n = 0;
    for (const auto& [key, list] : connections_)
        n += list.size();
    return n;
}

} // namespace Tav
