#pragma once

#include "model/SignalRelay.h"

#include <sigc++/signal.h>

namespace TavNA {

// The pair of signals every level above a channel carries, and the handlers
// that pass a tick from the level below on to them unchanged.
template <typename... Args> class TickRelay {
public:
    sigc::signal<void(Args...)> signalChannelSelected;
    sigc::signal<void(Args...)> signalChannelUnSelected;

protected:
    void _onChannelSelected(Args... args) { relay(signalChannelSelected, args...); }
    void _onChannelUnSelected(Args... args) { relay(signalChannelUnSelected, args...); }
};

} // namespace TavNA
