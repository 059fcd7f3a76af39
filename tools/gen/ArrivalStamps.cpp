#include "tools/gen/ArrivalStamps.h"

#include "tools/gen/GenOptions.h"

#include <algorithm>

namespace TavGen {

ArrivalDelay parseDelay(const std::string& text) {
    const auto at = text.find('@');
    if (at == std::string::npos || at == 0)
        throw UsageError("--delay takes T@SECONDS[xCOUNT]: " + text);
    ArrivalDelay d;
    d.delayNs = parseSeconds(text.substr(0, at));
    std::string when = text.substr(at + 1);
    if (const auto x = when.find('x'); x != std::string::npos) {
        const std::string count = when.substr(x + 1);
        if (count.empty() || count.find_first_not_of("0123456789") != std::string::npos)
            throw UsageError("--delay count must be a whole number: " + text);
        d.count = std::stoull(count);
        when = when.substr(0, x);
    }
    d.atNs = parseSeconds(when);
    return d;
}

ArrivalStamps::ArrivalStamps(std::unique_ptr<FrameSource> inner, std::uint32_t burst,
                             std::vector<ArrivalDelay> delays, std::uint64_t startNs)
    : inner_(std::move(inner)), burst_(std::max<std::uint32_t>(1, burst)),
      delays_(std::move(delays)), delayed_(delays_.size(), 0), startNs_(startNs) {
    _fill();
}

void ArrivalStamps::advance() {
    pending_.pop_front();
    if (pending_.empty())
        _fill();
}

// A burst leaves the card once its last frame is in: every frame of it on
// that frame's time.
void ArrivalStamps::_fill() {
    for (std::uint32_t i = 0; i < burst_ && !inner_->done(); ++i) {
        const auto bytes = inner_->frame();
        pending_.push_back({inner_->timeNs(), {bytes.begin(), bytes.end()}});
        inner_->advance();
    }
    if (pending_.empty())
        return;
    const std::uint64_t handedOver = pending_.back().timeNs;
    for (auto& held : pending_)
        held.timeNs = handedOver + _delayOf(held.timeNs);
}

std::uint64_t ArrivalStamps::_delayOf(std::uint64_t sentNs) {
    std::uint64_t delay = 0;
    for (std::size_t i = 0; i < delays_.size(); ++i) {
        if (sentNs < startNs_ + delays_[i].atNs || delayed_[i] >= delays_[i].count)
            continue;
        ++delayed_[i];
        delay += delays_[i].delayNs;
    }
    return delay;
}

} // namespace TavGen
