#pragma once

#include "health/StreamHealth.h"

#include <string>
#include <string_view>
#include <vector>

namespace TavHealth {

struct NamedCount {
    const char* name; // the field name, as the inspector writes it
    std::uint64_t value;
    // False for counts that describe healthy traffic too (copies on the
    // second LAN, GOOSE state changes): they never make a verdict.
    bool remark;
};

// Every count of the stream's kind, in a fixed order.
std::vector<NamedCount> healthCounts(const StreamHealth& health);

// What a person reads for a count's name or an event's kind; the key itself
// when there is no such name.
std::string labelOf(std::string_view key);

// "name value, name value" of the non-zero remarks; empty when there are none.
std::string remarksText(const StreamHealth& health);
// The same of the non-zero counts that are not remarks.
std::string notesText(const StreamHealth& health);
// "label: value, label: value" of the non-zero remarks, for the window.
std::string remarksLabelled(const StreamHealth& health);

} // namespace TavHealth
