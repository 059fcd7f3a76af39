#pragma once

#include "platform/parser/Identifiers.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <sigc++/connection.h>
#include <utility>
#include <vector>

namespace TavNA {

class PackageListPresenter;
class TavNaModel;

// While a capture grows, every batch of frames is a load that replaces the
// stream tree and the list built from it. The stream picked and the channels
// ticked when a batch begins are picked and ticked again in the list it
// leaves, so that the plot keeps drawing them; opening files is left as it was.
class LiveTicks {
public:
    // `list` gives the stream list of the moment: a mode switch replaces it.
    LiveTicks(TavNaModel& model, std::function<PackageListPresenter*()> list);
    ~LiveTicks();
    LiveTicks(const LiveTicks&) = delete;
    LiveTicks& operator=(const LiveTicks&) = delete;

private:
    template <typename Key> struct Marks {
        std::vector<std::pair<Key, std::size_t>> ticks; // stream, channel index
        std::optional<Key> picked;
        void clear() {
            ticks.clear();
            picked.reset();
        }
    };

    bool _live() const;
    void _remember();
    void _restore();

    TavNaModel& model;
    std::function<PackageListPresenter*()> list;
    Marks<TavIec61850::SvIdentifer> sv;
    Marks<TavIec61850::GooseIdentifer> goose;
    sigc::connection begun;
    sigc::connection settled;
};

} // namespace TavNA
