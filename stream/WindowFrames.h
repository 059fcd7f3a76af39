#pragma once

#include "platform/parser/StreamRecords.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace TavStream {

std::int64_t toNanoseconds(const TavIec61850Parser::Timest& t);

// A frame reaches a capture within this of its samples' instants: the frames
// that carry a window's samples are looked for up to this after its end.
constexpr std::int64_t kTransferMarginNs = 50'000'000;

// A frame of a stream with the file it lies in.
struct PlacedFrame {
    std::int64_t ns = 0; // capture time, nanoseconds since the epoch
    std::uint64_t offset = 0;
    const std::string* path = nullptr;
};

// The frames of one stream inside a window over all its files, in time order,
// and the latest frame before the window.
struct WindowFrames {
    std::vector<PlacedFrame> frames;
    std::optional<PlacedFrame> before;

    // The usual spacing of consecutive frames; 0 with fewer than two.
    double frameSpacingNs() const;
};

// Absent bounds take in the whole stream.
template <typename Record>
WindowFrames framesInWindow(const Record& stream,
                            const std::optional<TavIec61850Parser::Timest>& from,
                            const std::optional<TavIec61850Parser::Timest>& to);

// How frames of several files meet: sorted by time (what a plot draws), or
// each file in the order it was captured, the files merged by the time of
// their next frame (what the checks read: a frame captured out of time
// order stays where it came).
enum class FrameOrder { Time, Capture };

// The same for a set of files: of one stream, or what is left of it.
WindowFrames framesOfFiles(const TavIec61850Parser::PackageFiles& files,
                           const std::optional<TavIec61850Parser::Timest>& from,
                           const std::optional<TavIec61850Parser::Timest>& to,
                           FrameOrder order = FrameOrder::Time);

// Reads frames [begin, end) again, one check of each file for each run of
// frames from the same file; `use` gets the frame's place and its bytes.
void readFrames(const std::vector<PlacedFrame>& frames, std::size_t begin, std::size_t end,
                const std::function<void(std::size_t, const std::vector<std::uint8_t>&)>& use);

} // namespace TavStream
