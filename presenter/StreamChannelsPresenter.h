#pragma once

#include "platform/view/IPresenter.h"
#include "presenter/GooseStreamChannelPresenter.h"
#include "presenter/SvStreamChannelPresenter.h"
#include "view/GooseStreamChannelsView.h"
#include "view/SvStreamChannelsView.h"

#include <memory>
#include <vector>

namespace TavNA {

// The check buttons of one stream's channels, in the order they were added.
template <typename EntryT, typename ViewT> class StreamChannelsPresenter : public Tav::IPresenter {
public:
    using Entry = EntryT;
    using Entries = std::vector<std::unique_ptr<EntryT>>;

    StreamChannelsPresenter();
    StreamChannelsPresenter(const StreamChannelsPresenter&) = delete;
    StreamChannelsPresenter& operator=(const StreamChannelsPresenter&) = delete;

    EntryT& add(typename EntryT::Channel& channel);
    void addView(Tav::IView* view) { this->view->addView(view); }
    Tav::IView* getView() override { return view.get(); }
    ViewT& getViewObj() { return *view; }
    const Entries& getEntries() const { return entries; }

private:
    std::unique_ptr<ViewT> view;
    // After the view: the buttons leave the box before it goes.
    Entries entries;
};

extern template class StreamChannelsPresenter<SvStreamChannelPresenter, SvStreamChannelsView>;
extern template class StreamChannelsPresenter<GooseStreamChannelPresenter, GooseStreamChannelsView>;

} // namespace TavNA
