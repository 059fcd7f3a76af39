#include "comtrade/ChannelChoices.h"

#include "comtrade/GooseTimeline.h"
#include "model/SvChannelNaming.h"
#include "platform/parser/GooseParser.h"
#include "stream/WindowFrames.h"

#include <algorithm>

namespace TavComtrade {

namespace {

// Phases past N have no letter.
std::string phaseLetter(TavCalculate::Phase phase) {
    const auto index = static_cast<std::size_t>(phase);
    return index < 4 ? std::string(1, "ABCN"[index]) : std::string();
}

void appendOnce(std::string& joined, std::vector<std::string>& seen, const std::string& text) {
    if (std::find(seen.begin(), seen.end(), text) != seen.end())
        return;
    seen.push_back(text);
    // The field holds 64 bytes; whole names are kept rather than a cut one.
    if (!joined.empty() && joined.size() + 1 + text.size() > 64)
        return;
    if (!joined.empty())
        joined += '+';
    joined += text;
}

} // namespace

AnalogChoice analogChoice(const TavNA::SvChannel& channel, const TavIec61850Parser::Sv& stream) {
    AnalogChoice choice;
    choice.stream = &stream;
    choice.index = channel.getIndex();
    choice.name = channel.getDescription();
    choice.unit = channel.getSourceType() == TavRelay::AnalogChannelSourceType::Voltage
                      ? Unit::Volt
                      : Unit::Ampere;
    choice.phase = phaseLetter(channel.getPhase());
    choice.ratio = channel.getTransformRatio();
    return choice;
}

DigitalChoice digitalChoice(const TavNA::GooseChannel& channel,
                            const TavIec61850Parser::Goose& stream) {
    return {&stream, channel.getIndex(), channel.getDescription()};
}

std::vector<AnalogChoice> allChannels(const TavIec61850Parser::Sv& stream) {
    std::vector<AnalogChoice> choices;
    for (std::size_t i = 0; i < stream.valuesPerAsdu; ++i) {
        const auto label = TavNA::svChannelLabel(i, stream.valuesPerAsdu, stream.svId);
        TavNA::SvChannel channel;
        channel.setIndex(i);
        channel.setSourceType(label.source);
        channel.setPhase(label.phase);
        channel.setDescription(label.description);
        choices.push_back(analogChoice(channel, stream));
    }
    return choices;
}

std::vector<DigitalChoice> booleanChannels(const TavIec61850Parser::Goose& stream) {
    const WindowFrames window = framesInWindow(stream, std::nullopt, std::nullopt);
    std::vector<DigitalChoice> choices;
    readFrames(
        window.frames, 0, std::min<std::size_t>(1, window.frames.size()),
        [&](std::size_t, const std::vector<std::uint8_t>& bytes) {
            const auto pdu =
                TavIec61850Parser::GooseParser::parsePduFromFrame(bytes.data(), bytes.size());
            const auto entries = booleanEntries(pdu.data);
            for (std::size_t i = 0; i < entries.size(); ++i)
                if (entries[i])
                    choices.push_back({&stream, i, std::to_string(i + 1) + " | " + stream.goId});
        });
    return choices;
}

std::string stationNameOf(const std::vector<std::string>& paths) {
    std::string joined;
    std::vector<std::string> seen;
    for (const auto& path : paths) {
        std::string name = path.substr(path.find_last_of('/') + 1);
        if (const auto dot = name.find_last_of('.'); dot != std::string::npos && dot > 0)
            name.resize(dot);
        appendOnce(joined, seen, name);
    }
    return joined;
}

std::string deviceIdOf(const ExportRequest& request) {
    std::string joined;
    std::vector<std::string> seen;
    for (const auto& a : request.analog)
        appendOnce(joined, seen, a.stream->svId);
    for (const auto& d : request.digital)
        appendOnce(joined, seen, d.stream->goId);
    return joined;
}

} // namespace TavComtrade
