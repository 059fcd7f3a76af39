#pragma once

#include "platform/parser/StreamRecords.h"
#include "stream/StreamClocks.h"
#include "waveform/FrameRuns.h"
#include "waveform/TraceWindow.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace TavWaveform {

class SummaryStore;

// The samples of some channels of one SV stream inside a window, read again
// from every file of the stream in time order, each ASDU at its sampling
// instant by the stream's clock. Every sample is kept while they fit the
// window's budget, else a min/max envelope per column.
class SvTrace {
public:
    // `indices`: the channels' places in an ASDU's values. A frame that cannot
    // be read again ends the read of its file; each file's failure is kept
    // in `failure`. With `summaries`, a window far wider than the plot is
    // drawn from the stream's min/max summary once that is built.
    static Traces build(const TavIec61850Parser::Sv& stream,
                        const std::vector<std::size_t>& indices, const TraceWindow& window,
                        ReadFailures& failure, TavStream::StreamClocks* clocks,
                        SummaryStore* summaries = nullptr);
};

} // namespace TavWaveform
