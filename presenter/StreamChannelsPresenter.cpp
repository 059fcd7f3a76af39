#include "presenter/StreamChannelsPresenter.h"

#include <chrono>
#include <glibmm/main.h>

namespace TavNA {

template <typename EntryT, typename ViewT>
StreamChannelsPresenter<EntryT, ViewT>::StreamChannelsPresenter()
    : view(std::make_unique<ViewT>()) {}

namespace {

// Well inside what a person notices as a pause, with room left in the turn
// for the layout and drawing that the new buttons cause.
constexpr auto kSlice = std::chrono::milliseconds(15);

} // namespace

// An idle turn may still be queued: it must not reach a presenter that went.
template <typename EntryT, typename ViewT>
StreamChannelsPresenter<EntryT, ViewT>::~StreamChannelsPresenter() {
    batches.disconnect();
}

template <typename EntryT, typename ViewT>
void StreamChannelsPresenter<EntryT, ViewT>::fill(std::vector<Channel*> channels, Guard alive) {
    batches.disconnect();
    pending = std::move(channels);
    nextPending = 0;
    pendingAlive = std::move(alive);
    if (_addSlice())
        batches =
            Glib::signal_idle().connect(sigc::mem_fun(*this, &StreamChannelsPresenter::_addSlice));
}

template <typename EntryT, typename ViewT>
bool StreamChannelsPresenter<EntryT, ViewT>::_addSlice() {
    if (pendingAlive && !pendingAlive()) {
        pending.clear();
        return false;
    }
    const auto until = std::chrono::steady_clock::now() + kSlice;
    do {
        if (nextPending >= pending.size())
            break;
        addView(add(*pending[nextPending++]).getView());
    } while (std::chrono::steady_clock::now() < until);
    if (nextPending < pending.size())
        return true;
    pending.clear();
    return false;
}

template <typename EntryT, typename ViewT>
EntryT& StreamChannelsPresenter<EntryT, ViewT>::add(Channel& channel) {
    entries.push_back(std::make_unique<EntryT>(channel));
    return *entries.back();
}

template class StreamChannelsPresenter<SvStreamChannelPresenter, SvStreamChannelsView>;
template class StreamChannelsPresenter<GooseStreamChannelPresenter, GooseStreamChannelsView>;

} // namespace TavNA
