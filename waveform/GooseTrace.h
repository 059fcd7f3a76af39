#pragma once

#include "platform/parser/StreamRecords.h"
#include "waveform/FrameRuns.h"
#include "waveform/TraceWindow.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace TavWaveform {

// The states of some entries of one GOOSE stream inside a window as step
// curves across the whole window: frames of every file merged in time order,
// opened by the state in force before the window (the latest frame before it
// in any file) and held to the window's right edge.
class GooseTrace {
public:
    static Traces build(const TavIec61850Parser::Goose& stream,
                        const std::vector<std::size_t>& indices, const TraceWindow& window,
                        ReadFailures& failure);
};

} // namespace TavWaveform
