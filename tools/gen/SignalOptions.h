#pragma once

#include "tools/gen/SvSignal.h"

#include <string>

namespace TavGen {

// --harmonic N:PCT, --phase-angles A,B,C, --phase-amplitudes A,B,C,
// --current-lag DEG and --noise R; false for any other option.
bool applySignalValue(SvSignal& signal, const std::string& name, const std::string& value);

} // namespace TavGen
