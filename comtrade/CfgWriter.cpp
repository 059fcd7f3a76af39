#include "comtrade/CfgWriter.h"

#include <cstdio>
#include <ctime>

namespace TavComtrade {

namespace {

const char* const kEnd = "\r\n";

const char* unitText(Unit unit) {
    return unit == Unit::Volt ? "V" : "A";
}

} // namespace

std::string cfgField(const std::string& text, Revision revision) {
    std::string field;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == ',' || c == '\r' || c == '\n')
            field += ';';
        else if (byte >= 0x80 && revision == Revision::Rev1999)
            field += '_';
        else if (byte < 0x20)
            field += ' ';
        else
            field += c;
    }
    if (field.size() <= 64)
        return field;
    std::size_t cut = 64;
    // Never end inside a UTF-8 sequence.
    while (cut > 0 && (static_cast<unsigned char>(field[cut]) & 0xC0) == 0x80)
        --cut;
    return field.substr(0, cut);
}

std::string cfgTime(std::int64_t ns) {
    const std::time_t seconds = static_cast<std::time_t>(ns / 1'000'000'000);
    const auto micro = static_cast<long>((ns % 1'000'000'000) / 1000);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    char text[64];
    std::snprintf(text, sizeof text, "%02d/%02d/%04d,%02d:%02d:%02d.%06ld", utc.tm_mday,
                  utc.tm_mon + 1, utc.tm_year + 1900, utc.tm_hour, utc.tm_min, utc.tm_sec, micro);
    return text;
}

void writeCfg(std::ostream& out, const CfgContent& c) {
    const Revision rev = c.encoding.revision;
    const auto& analog = *c.analog;
    const auto& digital = *c.digital;
    out << cfgField(c.stationName, rev) << ',' << cfgField(c.deviceId, rev) << ','
        << (rev == Revision::Rev2013 ? "2013" : "1999") << kEnd;
    out << analog.size() + digital.size() << ',' << analog.size() << "A," << digital.size() << 'D'
        << kEnd;
    for (std::size_t i = 0; i < analog.size(); ++i) {
        const auto& ch = analog[i];
        const auto& s = (*c.scales)[i];
        // The values are those on the primary side, as the stream carries them.
        out << i + 1 << ',' << cfgField(ch.name, rev) << ',' << ch.phase << ','
            << cfgField(ch.stream->svId, rev) << ',' << unitText(ch.unit) << ','
            << shortestText(s.a) << ',' << shortestText(s.b) << ",0," << s.storedMin << ','
            << s.storedMax << ",1,1,P" << kEnd;
    }
    for (std::size_t i = 0; i < digital.size(); ++i)
        out << i + 1 << ',' << cfgField(digital[i].name, rev) << ",,"
            << cfgField(digital[i].stream->goId, rev) << ",0" << kEnd;
    out << c.lineFrequency << kEnd;
    if (c.sampleRate > 0) {
        char rate[32];
        std::snprintf(rate, sizeof rate, "%.6g", c.sampleRate);
        out << '1' << kEnd << rate << ',' << c.rows << kEnd;
    } else {
        out << '0' << kEnd << "0," << c.rows << kEnd;
    }
    out << cfgTime(c.firstNs) << kEnd << cfgTime(c.triggerNs) << kEnd;
    out << c.encoding.fileType() << kEnd;
    out << shortestText(c.timeUnitUs) << kEnd;
    if (rev == Revision::Rev2013) {
        // Times are UTC; how good the capturing clock was is not known.
        out << "0,0" << kEnd << "F,0" << kEnd;
    }
}

} // namespace TavComtrade
