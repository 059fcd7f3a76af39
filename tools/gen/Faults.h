#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace TavGen {

// What can go wrong with a publisher's frames, to write captures that the
// stream checks must catch.
enum class FaultKind {
    Drop,      // `count` frames from `at` on are not sent
    Repeat,    // the frame at `at` is sent twice, `count` times in a row
    Reorder,   // the frame at `at` and the next swap places
    Pause,     // no frame in [at, at + value seconds)
    LoseA,     // of LAN pairs, the copy on LAN A of `count` frames is lost
    LoseB,     // the same on LAN B
    Synch,     // SV: smpSynch becomes `value` from `at` on
    Quality,   // SV: channel 1's quality word is `value` for `count` frames
    StNumBack, // GOOSE: stNum falls by one at `at`
};

struct Fault {
    FaultKind kind = FaultKind::Drop;
    std::uint64_t atNs = 0; // after the start of the capture
    std::uint64_t count = 1;
    std::uint64_t value = 0; // Pause: nanoseconds
};

// "KIND[:VALUE]@SECONDS[xCOUNT]": drop@0.5x3, repeat@0.2, reorder@0.3,
// pause:3@0.5, lose-a@0.1, lose-b@0.1x2, synch:0@0.4, quality:0x2001@0.25x10,
// stnum-back@0.6. Throws UsageError.
Fault parseFault(const std::string& text);

// Whether the fault changes which frames go out (else it changes their bytes).
bool reshapesFrames(FaultKind kind);

bool anyReshaping(const std::vector<Fault>& faults);

} // namespace TavGen
