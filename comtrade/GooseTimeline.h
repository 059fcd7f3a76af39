#pragma once

#include "stream/WindowFrames.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace TavComtrade {

using TavStream::framesInWindow;
using TavStream::PlacedFrame;
using TavStream::readFrames;
using TavStream::toNanoseconds;
using TavStream::WindowFrames;

// The boolean entries of one GOOSE stream through a window: the state each
// frame carries, and the state in force before the window.
class GooseTimeline {
public:
    GooseTimeline(const TavIec61850Parser::Goose& stream,
                  const std::optional<TavIec61850Parser::Timest>& from,
                  const std::optional<TavIec61850Parser::Timest>& to,
                  std::vector<std::size_t> entries);

    const TavIec61850Parser::Goose& stream() const { return stream_; }
    // Capture times of the frames inside the window.
    std::vector<std::int64_t> frameTimes() const;
    std::optional<std::int64_t> timeBefore() const;
    // Places in `entries` that no frame carries as a boolean.
    std::vector<std::size_t> nonBoolean() const;

    // The state of each entry in force at `ns`: that of the last frame at or
    // before it; 0 while none is known. Calls must come in time order until
    // the next rewind.
    void stateAt(std::int64_t ns, std::vector<std::uint8_t>& out, std::size_t at);
    void rewind() { next_ = 0; }

private:
    struct State {
        std::int64_t ns = 0;
        std::vector<std::uint8_t> bits;
    };

    const TavIec61850Parser::Goose& stream_;
    std::vector<std::size_t> entries_;
    std::vector<State> states_; // the one before the window first, when known
    bool hasBefore_ = false;
    std::vector<bool> seenBoolean_;
    std::size_t next_ = 0;
};

// Top-level allData elements: 0 or 1 for a boolean, nothing for any other type.
std::vector<std::optional<bool>> booleanEntries(const std::vector<std::uint8_t>& allData);

} // namespace TavComtrade
