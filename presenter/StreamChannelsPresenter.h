#pragma once

#include "platform/view/IPresenter.h"
#include "presenter/GooseStreamChannelPresenter.h"
#include "presenter/SvStreamChannelPresenter.h"
#include "view/GooseStreamChannelsView.h"
#include "view/SvStreamChannelsView.h"

#include <functional>
#include <memory>
#include <sigc++/connection.h>
#include <vector>

namespace TavNA {

// The check buttons of one stream's channels, in the order they were added.
// A wide stream gets its buttons over several turns of the main loop, so the
// window keeps answering while thousands of them are made.
template <typename EntryT, typename ViewT> class StreamChannelsPresenter : public Tav::IPresenter {
public:
    using Entry = EntryT;
    using Entries = std::vector<std::unique_ptr<EntryT>>;

    using Channel = typename EntryT::Channel;
    // Whether the channels handed to `fill` are still alive.
    using Guard = std::function<bool()>;

    StreamChannelsPresenter();
    ~StreamChannelsPresenter() override;
    StreamChannelsPresenter(const StreamChannelsPresenter&) = delete;
    StreamChannelsPresenter& operator=(const StreamChannelsPresenter&) = delete;

    EntryT& add(Channel& channel);
    void addView(Tav::IView* view) { this->view->addView(view); }
    // A button for each channel, in order: as many as fit a short time slice
    // at once, the rest a slice per idle turn while `alive` holds.
    void fill(std::vector<Channel*> channels, Guard alive);
    bool filling() const { return batches.connected(); }
    // No more buttons are made for the channels handed to `fill`.
    void stopFilling() { batches.disconnect(); }
    Tav::IView* getView() override { return view.get(); }
    ViewT& getViewObj() { return *view; }
    const Entries& getEntries() const { return entries; }

private:
    // Returns whether channels are left.
    bool _addSlice();

    std::unique_ptr<ViewT> view;
    std::vector<Channel*> pending;
    std::size_t nextPending = 0;
    Guard pendingAlive;
    sigc::connection batches;
    // After the view: the buttons leave the box before it goes.
    Entries entries;
};

extern template class StreamChannelsPresenter<SvStreamChannelPresenter, SvStreamChannelsView>;
extern template class StreamChannelsPresenter<GooseStreamChannelPresenter, GooseStreamChannelsView>;

} // namespace TavNA
