#pragma once

#include "waveform/FrameRuns.h"
#include "waveform/GooseTrace.h"
#include "waveform/SvTrace.h"
#include "waveform/TraceWindow.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace TavWaveform {

// The curves of every ticked channel of one redraw: each stream is read once
// for all of its channels, however many of them are ticked.
template <typename Record, typename Builder> class TraceBatch {
public:
    void want(const Record* stream, std::size_t index) {
        auto& indices = entries_[stream].indices;
        if (std::find(indices.begin(), indices.end(), index) == indices.end())
            indices.push_back(index);
    }

    // `extra` goes to the builder as it is.
    template <typename... Extra>
    void build(const TraceWindow& window, ReadFailures& failure, Extra... extra) {
        for (auto& [stream, entry] : entries_)
            entry.traces = Builder::build(*stream, entry.indices, window, failure, extra...);
    }

    // The channel's points, null when it was not wanted.
    const std::vector<TracePoint>* points(const Record* stream, std::size_t index,
                                          bool& envelope) const {
        const auto it = entries_.find(stream);
        if (it == entries_.end())
            return nullptr;
        const auto& indices = it->second.indices;
        const auto at = std::find(indices.begin(), indices.end(), index);
        if (at == indices.end() || it->second.traces.channels.size() != indices.size())
            return nullptr;
        envelope = it->second.traces.envelope;
        return &it->second.traces.channels[static_cast<std::size_t>(at - indices.begin())];
    }

private:
    struct Entry {
        std::vector<std::size_t> indices;
        Traces traces;
    };
    std::map<const Record*, Entry> entries_;
};

using SvBatch = TraceBatch<TavIec61850Parser::Sv, SvTrace>;
using GooseBatch = TraceBatch<TavIec61850Parser::Goose, GooseTrace>;

} // namespace TavWaveform
