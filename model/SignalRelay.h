#pragma once

namespace TavNA {

// Every level of the stream tree passes a tick on unchanged; an outgoing
// signal nobody listens to is not worth the emission.
template <typename Signal, typename... Args> void relay(Signal& signal, Args... args) {
    if (signal.empty())
        return;
    signal.emit(args...);
}

} // namespace TavNA
