#include "presenter/StreamChannelsPresenter.h"

namespace TavNA {

template <typename EntryT, typename ViewT>
StreamChannelsPresenter<EntryT, ViewT>::StreamChannelsPresenter()
    : view(std::make_unique<ViewT>()) {}

template <typename EntryT, typename ViewT>
EntryT& StreamChannelsPresenter<EntryT, ViewT>::add(typename EntryT::Channel& channel) {
    entries.push_back(std::make_unique<EntryT>(channel));
    return *entries.back();
}

template class StreamChannelsPresenter<SvStreamChannelPresenter, SvStreamChannelsView>;
template class StreamChannelsPresenter<GooseStreamChannelPresenter, GooseStreamChannelsView>;

} // namespace TavNA
