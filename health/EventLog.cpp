#include "health/EventLog.h"

#include <algorithm>

namespace TavHealth {

void EventLog::add(const Timest& time, const std::string& kind, std::string text) {
    auto& kept = byKind_[kind];
    if (kept.size() < kMaxEvents)
        kept.push_back({{time, kind, std::move(text)}, total_});
    ++total_;
}

void EventLog::addFlagChange(const Timest& time, const std::string& kind, std::optional<bool>& last,
                             bool now, const char* set, const char* cleared) {
    if (last && *last != now)
        add(time, kind, now ? set : cleared);
    last = now;
}

void EventLog::moveInto(StreamHealth& health) {
    std::vector<Numbered> all;
    for (auto& [kind, kept] : byKind_)
        std::move(kept.begin(), kept.end(), std::back_inserter(all));
    // By time; at the same time in the order the checks found them.
    std::sort(all.begin(), all.end(), [](const Numbered& a, const Numbered& b) {
        return std::pair(a.event.time, a.number) < std::pair(b.event.time, b.number);
    });
    if (all.size() > kMaxEvents)
        all.resize(kMaxEvents);
    health.events.clear();
    for (auto& n : all)
        health.events.push_back(std::move(n.event));
    health.eventCount = total_;
    byKind_.clear();
    total_ = 0;
}

} // namespace TavHealth
