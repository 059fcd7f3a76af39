#pragma once

#include "health/StreamHealth.h"

#include <map>
#include <optional>

namespace TavHealth {

// Keeps the first kMaxEvents events of each kind while the checks run, so
// that the first kMaxEvents of the stream, whatever their kind, are kept
// without holding every event of a stream that is wrong throughout.
class EventLog {
public:
    void add(const Timest& time, const std::string& kind, std::string text);
    // A flag set or cleared since the stream's frame before. The first frame
    // only gives the starting state: a stream simulated throughout has no
    // moment at which it became so.
    void addFlagChange(const Timest& time, const std::string& kind, std::optional<bool>& last,
                       bool now, const char* set, const char* cleared);
    // The kept events in time order (stable), at most kMaxEvents, and the total.
    void moveInto(StreamHealth& health);

private:
    struct Numbered {
        HealthEvent event;
        std::uint64_t number; // in the order added
    };
    std::map<std::string, std::vector<Numbered>> byKind_;
    std::uint64_t total_ = 0;
};

} // namespace TavHealth
