#pragma once

#include "model/GooseGroup.h"
#include "model/IGroup.h"
#include "model/SclConfiguration.h"
#include "model/SvGroup.h"
#include "platform/view/IPresenter.h"
#include "presenter/GooseStreamChannelsPresenter.h"
#include "presenter/SvStreamChannelsPresenter.h"
#include "view/GooseStreamView.h"
#include "view/ISelectable.h"
#include "view/SvStreamView.h"

#include <cstdint>
#include <memory>
#include <sigc++/signal.h>
#include <string>
#include <vector>

namespace TavNA {

// What an SV entry does differently from a GOOSE entry: each protocol
// specialises these for its own group.
template <typename GroupT, typename ViewT, typename ChannelsT> struct StreamTraits {
    using Group = GroupT;
    using Record = typename GroupT::Record;
    using View = ViewT;
    using ChannelsPresenter = ChannelsT;

    static std::string caption(const Record& record, std::int32_t count);
    static std::string tooltip(const Record& record, std::int32_t count);
    // How many values the frame at `offset` carries.
    static std::size_t readValueCount(const std::string& path, unsigned long long offset);
    static void nameChannels(Group& group, const Record& record);
};

using SvStreamTraits = StreamTraits<SvGroup, SvStreamView, SvStreamChannelsPresenter>;
using GooseStreamTraits = StreamTraits<GooseGroup, GooseStreamView, GooseStreamChannelsPresenter>;

// One stream in the stream list. Its channels are made on the first pick of
// the stream, from its first frame, and never again; a presenter made anew
// over the same stream shows them on its own first pick.
template <typename Traits> class StreamPresenter : public Tav::IPresenter {
public:
    using Group = typename Traits::Group;
    using View = typename Traits::View;
    using ChannelsPresenter = typename Traits::ChannelsPresenter;

    // The group must hold at least one record. Channels are named by the
    // configuration's data set when `scl` holds the stream's control block.
    explicit StreamPresenter(Group& group, const SclConfiguration* scl = nullptr);
    StreamPresenter(const StreamPresenter&) = delete;
    StreamPresenter& operator=(const StreamPresenter&) = delete;

    Tav::IView* getView() override { return view.get(); }
    View* getViewObj() { return view.get(); }
    Group& getModel() const { return group; }
    ChannelsPresenter& getChannelsPresenter() { return channels; }
    // Tells the channel buttons still being made whether the stream's
    // channels are alive; without it they are taken to be.
    void setChannelsGuard(typename ChannelsPresenter::Guard alive) {
        channelsAlive = std::move(alive);
    }

    sigc::signal<void(ISelectable*, const IGroup*)> signalSelected;

private:
    void _onSelected();
    void _createChannels();

    Group& group;
    const SclConfiguration* scl;
    std::unique_ptr<View> view;
    ChannelsPresenter channels;
    typename ChannelsPresenter::Guard channelsAlive;
    bool channelsShown = false;
};

extern template class StreamPresenter<SvStreamTraits>;
extern template class StreamPresenter<GooseStreamTraits>;

// Packages of one record over all its files.
template <typename Record> std::uint64_t packageCount(const Record& record) {
    std::uint64_t count = 0;
    for (const auto& file : record.files)
        count += file.packages.size();
    return count;
}

} // namespace TavNA
