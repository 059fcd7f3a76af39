#pragma once

#include "stream/WindowFrames.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace TavWaveform {

// Files whose frames could not be read again, each with the parser's reason.
using ReadFailures = std::set<std::pair<std::string, std::string>>;

// Reads every frame again, in the order given, a run of frames from one file
// at a time. A run that fails (the file gone or changed) is left out from the
// failing frame on and the others still read; each file's failure is kept.
void readFrameRuns(const std::vector<TavStream::PlacedFrame>& frames, ReadFailures& failures,
                   const std::function<void(std::size_t, const std::vector<std::uint8_t>&)>& use);

} // namespace TavWaveform
