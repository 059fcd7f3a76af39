#include "presenter/StreamChannelPresenter.h"

#include <sigc++/functors/mem_fun.h>

namespace TavNA {

template <typename ChannelT, typename ViewT>
StreamChannelPresenter<ChannelT, ViewT>::StreamChannelPresenter(ChannelT& channel)
    : channel(channel), view(std::make_unique<ViewT>()) {
    view->setName(channel.getName());
    if (!channel.getHint().empty())
        view->checkButton().set_tooltip_text(channel.getHint());
    // A channel ticked again in a rebuilt tree shows its tick; set before the
    // presenter listens, so that it is not reported back as the user's.
    if (channel.isSelected())
        view->checkButton().set_active(true);
    view->signalStatusChanged.connect(
        sigc::mem_fun(*this, &StreamChannelPresenter::_onStatusChanged));
}

template <typename ChannelT, typename ViewT>
void StreamChannelPresenter<ChannelT, ViewT>::_onStatusChanged(bool active) {
    channel.setSelected(active);
}

template class StreamChannelPresenter<SvChannel, SvStreamChannelView>;
template class StreamChannelPresenter<GooseChannel, GooseStreamChannelView>;

} // namespace TavNA
