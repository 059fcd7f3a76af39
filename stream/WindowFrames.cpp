#include "stream/WindowFrames.h"

#include "platform/parser/FrameReader.h"
#include "platform/parser/WindowQuery.h"

#include <algorithm>
#include <cmath>
#include <queue>
#include <tuple>

namespace TavStream {

using TavIec61850Parser::Timest;

std::int64_t toNanoseconds(const Timest& t) {
    return static_cast<std::int64_t>(t.seconds) * 1'000'000'000 + t.nanoseconds;
}

double WindowFrames::frameSpacingNs() const {
    if (frames.size() < 2)
        return 0.0;
    const double mean = static_cast<double>(frames.back().ns - frames.front().ns) /
                        static_cast<double>(frames.size() - 1);
    // A few thousand spacings tell the rate as well as all of them.
    const std::size_t step = std::max<std::size_t>(1, frames.size() / 4096);
    std::vector<std::int64_t> spacings;
    for (std::size_t i = step; i < frames.size(); i += step)
        spacings.push_back(frames[i].ns - frames[i - 1].ns);
    const auto middle = spacings.begin() + static_cast<std::ptrdiff_t>(spacings.size() / 2);
    std::nth_element(spacings.begin(), middle, spacings.end());
    const auto median = static_cast<double>(*middle);
    // The median ignores gaps where frames were lost; but a capturing host
    // that stamps frames in batches gives many equal times, and then only
    // the mean tells the spacing.
    return median > 0 && std::abs(median / mean - 1.0) < 0.25 ? median : mean;
}

namespace {

// Each file's frames stay in capture order; the next frame taken is the
// earliest of the files' next ones (ties: the file whose path sorts first).
std::vector<PlacedFrame> mergeByHeads(std::vector<std::vector<PlacedFrame>>& perFile) {
    using Head = std::tuple<std::int64_t, const std::string*, std::size_t, std::size_t>;
    const auto later = [](const Head& a, const Head& b) {
        return std::tie(std::get<0>(a), *std::get<1>(a)) >
               std::tie(std::get<0>(b), *std::get<1>(b));
    };
    std::priority_queue<Head, std::vector<Head>, decltype(later)> heads(later);
    std::size_t total = 0;
    for (std::size_t f = 0; f < perFile.size(); ++f) {
        total += perFile[f].size();
        if (!perFile[f].empty())
            heads.emplace(perFile[f][0].ns, perFile[f][0].path, f, 0);
    }
    std::vector<PlacedFrame> merged;
    merged.reserve(total);
    while (!heads.empty()) {
        const auto [ns, path, f, i] = heads.top();
        heads.pop();
        merged.push_back(perFile[f][i]);
        if (i + 1 < perFile[f].size())
            heads.emplace(perFile[f][i + 1].ns, perFile[f][i + 1].path, f, i + 1);
    }
    return merged;
}

} // namespace

WindowFrames framesOfFiles(const TavIec61850Parser::PackageFiles& files,
                           const std::optional<Timest>& from, const std::optional<Timest>& to,
                           FrameOrder order) {
    const Timest lower = from.value_or(Timest{0, 0});
    const Timest upper = to.value_or(Timest{0xFFFFFFFFu, 999'999'999u});
    WindowFrames result;
    std::vector<std::vector<PlacedFrame>> perFile;
    for (const auto& file : files) {
        const auto window = TavIec61850Parser::windowOf(file, lower, upper);
        auto& frames = order == FrameOrder::Capture && files.size() > 1 ? perFile.emplace_back()
                                                                        : result.frames;
        for (const auto* p : window.packages)
            frames.push_back({toNanoseconds(p->time), p->offset, &file.path});
        if (window.lastBefore != nullptr) {
            const PlacedFrame before{toNanoseconds(window.lastBefore->time),
                                     window.lastBefore->offset, &file.path};
            if (!result.before || result.before->ns < before.ns)
                result.before = before;
        }
    }
    if (order == FrameOrder::Capture) {
        if (files.size() > 1)
            result.frames = mergeByHeads(perFile);
        return result;
    }
    // One file whose times never go backwards is in order already: sorting a
    // whole capture's frames would cost more than reading them.
    if (files.size() == 1 && files.begin()->timeOrdered)
        return result;
    // Files in path order first, so that frames of equal times keep one order.
    std::stable_sort(result.frames.begin(), result.frames.end(),
                     [](const PlacedFrame& a, const PlacedFrame& b) { return *a.path < *b.path; });
    std::stable_sort(result.frames.begin(), result.frames.end(),
                     [](const PlacedFrame& a, const PlacedFrame& b) { return a.ns < b.ns; });
    return result;
}

template <typename Record>
WindowFrames framesInWindow(const Record& stream, const std::optional<Timest>& from,
                            const std::optional<Timest>& to) {
    return framesOfFiles(stream.files, from, to);
}

template WindowFrames framesInWindow(const TavIec61850Parser::Sv&, const std::optional<Timest>&,
                                     const std::optional<Timest>&);
template WindowFrames framesInWindow(const TavIec61850Parser::Goose&, const std::optional<Timest>&,
                                     const std::optional<Timest>&);

void readFrames(const std::vector<PlacedFrame>& frames, std::size_t begin, std::size_t end,
                const std::function<void(std::size_t, const std::vector<std::uint8_t>&)>& use) {
    std::vector<std::uint64_t> offsets;
    while (begin < end) {
        std::size_t runEnd = begin;
        offsets.clear();
        while (runEnd < end && frames[runEnd].path == frames[begin].path)
            offsets.push_back(frames[runEnd++].offset);
        TavIec61850Parser::FrameReader::readEach(
            *frames[begin].path, offsets,
            [&](std::size_t i, std::vector<std::uint8_t>& bytes) { use(begin + i, bytes); });
        begin = runEnd;
    }
}

} // namespace TavStream
