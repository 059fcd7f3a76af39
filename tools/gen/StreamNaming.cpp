#include "tools/gen/StreamNaming.h"

#include <cstdio>

namespace TavGen {

namespace {
std::string format(const char* pattern, unsigned n) {
    char text[64];
    std::snprintf(text, sizeof text, pattern, n);
    return text;
}
} // namespace

SvStreamConfig namedSvStream(unsigned n) {
    SvStreamConfig c;
    const auto nn = static_cast<std::uint8_t>(n);
    c.src = {0x02, 0x00, 0x00, 0x00, 0x01, nn};
    c.dst = {0x01, 0x0c, 0xcd, 0x04, 0x00, nn};
    c.appId = static_cast<std::uint16_t>(0x4000 + n);
    c.svId = format("TavnaSV%02d", n);
    c.datSet = format("TAVNA/LLN0$SV%02d", n);
    c.confRev = 1;
    return c;
}

GooseStreamConfig namedGooseStream(unsigned n) {
    GooseStreamConfig c;
    const auto nn = static_cast<std::uint8_t>(n);
    c.src = {0x02, 0x00, 0x00, 0x00, 0x02, nn};
    c.dst = {0x01, 0x0c, 0xcd, 0x01, 0x00, nn};
    c.appId = static_cast<std::uint16_t>(0x1000 + n);
    c.gocbRef = format("TAVNA%02dLD0/LLN0$GO$gcb1", n);
    c.goId = format("TavnaGOOSE%02d", n);
    c.datSet = format("TAVNA%02dLD0/LLN0$DS1", n);
    c.confRev = 1;
    return c;
}

std::vector<GooseEntry> alternatingEntries(unsigned booleans, unsigned bitStrings) {
    std::vector<GooseEntry> entries;
    while (booleans > 0 || bitStrings > 0) {
        if (booleans > 0) {
            entries.push_back(GooseEntry::Boolean);
            --booleans;
        }
        if (bitStrings > 0) {
            entries.push_back(GooseEntry::DoublePoint);
            --bitStrings;
        }
    }
    return entries;
}

std::vector<std::uint8_t> nextState(const std::vector<GooseEntry>& entries,
                                    const std::vector<std::uint8_t>& state) {
    std::vector<std::uint8_t> next(state);
    for (std::size_t i = 0; i < entries.size() && i < next.size(); ++i) {
        if (entries[i] == GooseEntry::Boolean)
            next[i] = next[i] ? 0 : 1;
        else
            next[i] = static_cast<std::uint8_t>((next[i] + 1) % 4);
    }
    return next;
}

} // namespace TavGen
