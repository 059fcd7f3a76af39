#pragma once

#include "model/GooseChannel.h"
#include "model/SvChannel.h"
#include "platform/view/IPresenter.h"
#include "view/GooseStreamChannelView.h"
#include "view/SvStreamChannelView.h"

#include <memory>

namespace TavNA {

// One channel's check button. Ticks go to the channel and nothing comes back:
// the button is the only record of what the user ticked.
template <typename ChannelT, typename ViewT> class StreamChannelPresenter : public Tav::IPresenter {
public:
    using Channel = ChannelT;

    explicit StreamChannelPresenter(ChannelT& channel);
    StreamChannelPresenter(const StreamChannelPresenter&) = delete;
    StreamChannelPresenter& operator=(const StreamChannelPresenter&) = delete;

    Tav::IView* getView() override { return view.get(); }
    ViewT& getViewObj() { return *view; }

private:
    void _onStatusChanged(bool active);

    ChannelT& channel;
    std::unique_ptr<ViewT> view;
};

extern template class StreamChannelPresenter<SvChannel, SvStreamChannelView>;
extern template class StreamChannelPresenter<GooseChannel, GooseStreamChannelView>;

} // namespace TavNA
