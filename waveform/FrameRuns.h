#pragma once

#include "comtrade/WindowFrames.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace TavWaveform {

// Reads every frame again, in the order given, a run of frames from one file
// at a time. A run that fails (the file gone or changed) is left out from the
// failing frame on and the others still read; the first failure is kept.
void readFrameRuns(const std::vector<TavComtrade::PlacedFrame>& frames,
                   std::optional<std::string>& failure,
                   const std::function<void(std::size_t, const std::vector<std::uint8_t>&)>& use);

} // namespace TavWaveform
