#include "comtrade/GooseTimeline.h"

#include "platform/parser/BerReader.h"
#include "platform/parser/GooseParser.h"
#include "platform/parser/ParseError.h"

namespace TavComtrade {

namespace {
constexpr std::uint8_t kBooleanTag = 0x83;
} // namespace

std::vector<std::optional<bool>> booleanEntries(const std::vector<std::uint8_t>& allData) {
    std::vector<std::optional<bool>> entries;
    TavIec61850Parser::BerReader reader(allData.data(), allData.size());
    try {
        while (!reader.atEnd()) {
            const auto e = reader.next();
            if (e.tag == kBooleanTag && e.length == 1)
                entries.emplace_back(e.value[0] != 0);
            else
                entries.emplace_back();
        }
    } catch (const TavIec61850Parser::MalformedFrame&) {
        // What came before the bytes that stop parsing still stands.
    }
    return entries;
}

GooseTimeline::GooseTimeline(const TavIec61850Parser::Goose& stream,
                             const std::optional<TavIec61850Parser::Timest>& from,
                             const std::optional<TavIec61850Parser::Timest>& to,
                             std::vector<std::size_t> entries)
    : stream_(stream), entries_(std::move(entries)), seenBoolean_(entries_.size(), false) {
    WindowFrames window = framesInWindow(stream, from, to);
    hasBefore_ = window.before.has_value();
    if (window.before)
        window.frames.insert(window.frames.begin(), *window.before);
    std::vector<std::uint8_t> held(entries_.size(), 0);
    readFrames(window.frames, 0, window.frames.size(),
               [&](std::size_t i, const std::vector<std::uint8_t>& bytes) {
                   const auto pdu = TavIec61850Parser::GooseParser::parsePduFromFrame(bytes.data(),
                                                                                      bytes.size());
                   const auto values = booleanEntries(pdu.data);
                   // An entry that is not a boolean in this frame keeps its last state.
                   for (std::size_t k = 0; k < entries_.size(); ++k) {
                       const std::size_t e = entries_[k];
                       if (e < values.size() && values[e]) {
                           held[k] = *values[e] ? 1 : 0;
                           seenBoolean_[k] = true;
                       }
                   }
                   states_.push_back({window.frames[i].ns, held});
               });
}

std::vector<std::int64_t> GooseTimeline::frameTimes() const {
    std::vector<std::int64_t> times;
    for (std::size_t i = hasBefore_ ? 1 : 0; i < states_.size(); ++i)
        times.push_back(states_[i].ns);
    return times;
}

std::optional<std::int64_t> GooseTimeline::timeBefore() const {
    if (!hasBefore_)
        return std::nullopt;
    return states_.front().ns;
}

std::vector<std::size_t> GooseTimeline::nonBoolean() const {
    std::vector<std::size_t> places;
    for (std::size_t k = 0; k < seenBoolean_.size(); ++k)
        if (!seenBoolean_[k])
            places.push_back(k);
    return places;
}

void GooseTimeline::stateAt(std::int64_t ns, std::vector<std::uint8_t>& out, std::size_t at) {
    while (next_ < states_.size() && states_[next_].ns <= ns)
        ++next_;
    for (std::size_t k = 0; k < entries_.size(); ++k)
        out[at + k] = next_ == 0 ? 0 : states_[next_ - 1].bits[k];
}

} // namespace TavComtrade
