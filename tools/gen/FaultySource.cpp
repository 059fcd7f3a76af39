#include "tools/gen/FaultySource.h"

namespace TavGen {

namespace {

// The PRP trailer ends the frame: sequence, LAN and size, suffix 0x88FB.
void setPrpLan(std::vector<std::uint8_t>& frame, std::uint8_t lan) {
    std::uint8_t& field = frame[frame.size() - 4];
    field = static_cast<std::uint8_t>((field & 0x0F) | (lan << 4));
}

} // namespace

FaultySource::FaultySource(std::unique_ptr<FrameSource> inner, std::vector<Fault> faults,
                           std::uint64_t startNs, bool lanPairs)
    : inner_(std::move(inner)), lanPairs_(lanPairs) {
    for (Fault f : faults) {
        if (!reshapesFrames(f.kind))
            continue;
        f.atNs += startNs;
        faults_.push_back({f, f.count});
    }
    fill();
}

void FaultySource::advance() {
    pending_.pop_front();
    if (pending_.empty())
        fill();
}

FaultySource::Out FaultySource::takeInner() {
    const auto bytes = inner_->frame();
    Out out{inner_->timeNs(), std::vector<std::uint8_t>(bytes.begin(), bytes.end())};
    inner_->advance();
    return out;
}

FaultySource::Active* FaultySource::due(FaultKind kind, std::uint64_t timeNs) {
    for (auto& a : faults_) {
        if (a.fault.kind != kind || timeNs < a.fault.atNs)
            continue;
        if (kind == FaultKind::Pause ? timeNs < a.fault.atNs + a.fault.value : a.left > 0)
            return &a;
    }
    return nullptr;
}

void FaultySource::fill() {
    while (pending_.empty() && !inner_->done()) {
        Out out = takeInner();
        if (due(FaultKind::Pause, out.timeNs))
            continue;
        if (Active* drop = due(FaultKind::Drop, out.timeNs)) {
            --drop->left;
            continue;
        }
        const bool loseA = due(FaultKind::LoseA, out.timeNs) != nullptr;
        const bool loseB = due(FaultKind::LoseB, out.timeNs) != nullptr;
        for (auto* lose : {due(FaultKind::LoseA, out.timeNs), due(FaultKind::LoseB, out.timeNs)})
            if (lose)
                --lose->left;
        if (Active* swap = due(FaultKind::Reorder, out.timeNs); swap && !inner_->done()) {
            --swap->left;
            Out next = takeInner();
            std::swap(out.bytes, next.bytes);
            emit(std::move(out), loseA, loseB);
            emit(std::move(next), false, false);
            continue;
        }
        if (Active* repeat = due(FaultKind::Repeat, out.timeNs)) {
            --repeat->left;
            emit(out, false, false);
        }
        emit(std::move(out), loseA, loseB);
    }
}

void FaultySource::emit(Out out, bool loseA, bool loseB) {
    if (!lanPairs_) {
        pending_.push_back(std::move(out));
        return;
    }
    Out b = out;
    setPrpLan(out.bytes, 0xA);
    setPrpLan(b.bytes, 0xB);
    if (!loseA)
        pending_.push_back(std::move(out));
    if (!loseB)
        pending_.push_back(std::move(b));
}

} // namespace TavGen
