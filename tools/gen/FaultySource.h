#pragma once

#include "tools/gen/Faults.h"
#include "tools/gen/FrameSource.h"

#include <deque>
#include <memory>
#include <vector>

namespace TavGen {

// A publisher's frames with frames dropped, repeated, swapped or held back,
// and, for LAN pairs, each frame sent on LAN A and again on LAN B.
class FaultySource : public FrameSource {
public:
    // `inner` must carry a PRP trailer when `lanPairs` is set.
    FaultySource(std::unique_ptr<FrameSource> inner, std::vector<Fault> faults,
                 std::uint64_t startNs, bool lanPairs);

    bool done() const override { return pending_.empty(); }
    std::uint64_t timeNs() const override { return pending_.front().timeNs; }
    std::span<const std::uint8_t> frame() override { return pending_.front().bytes; }
    void advance() override;

private:
    struct Out {
        std::uint64_t timeNs;
        std::vector<std::uint8_t> bytes;
    };
    struct Active {
        Fault fault;
        std::uint64_t left; // frames still to touch
    };

    Out takeInner();
    void fill();
    void emit(Out out, bool loseA, bool loseB);
    Active* due(FaultKind kind, std::uint64_t timeNs);

    std::unique_ptr<FrameSource> inner_;
    std::vector<Active> faults_;
    bool lanPairs_;
    std::deque<Out> pending_;
};

} // namespace TavGen
