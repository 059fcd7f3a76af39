#pragma once

#include <sigc++/connection.h>
#include <unordered_map>
#include <vector>

namespace Tav {

// Keeps signal connections under the address of the object they belong to, so
// that all of them can be cut at once (and are cut when the dispatcher goes).
class PointerConnectionsDispatcher {
public:
    PointerConnectionsDispatcher() = default;
    PointerConnectionsDispatcher(const PointerConnectionsDispatcher&) = delete;
    PointerConnectionsDispatcher& operator=(const PointerConnectionsDispatcher&) = delete;
    ~PointerConnectionsDispatcher();

    void connect(const void* key, const sigc::connection& connection);
    // Cuts the connections kept under one key.
    void disconnect(const void* key);
    void disconnectAll();
    std::size_t size() const;

private:
    std::unordered_map<const void*, std::vector<sigc::connection>> connections_;
};

} // namespace Tav
