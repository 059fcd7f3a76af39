#include "platform/parser/GooseParser.h"
#include "platform/parser/SvParser.h"
#include "stream/WindowFrames.h"
#include "tools/summary/Reports.h"

#include <algorithm>

#include <cmath>
#include <cstdio>

namespace TavInspect {

namespace {

// seqData bytes that make no complete 8-byte entry, as lowercase hex.
std::string hex(const std::vector<std::uint8_t>& bytes) {
    static const char digits[] = "0123456789abcdef";
    std::string text;
    for (std::uint8_t b : bytes) {
        text += digits[b >> 4];
        text += digits[b & 0xF];
    }
    return text;
}

// The instant the merging unit took the sample, by the stream's clock: the
// frame's arrival (`time`) is when the capturing computer got it.
std::string sampleTime(std::int64_t ns, int decimals) {
    const std::int64_t second = 1'000'000'000;
    const TavIec61850Parser::Timest t{static_cast<std::uint32_t>(ns / second),
                                      static_cast<std::uint32_t>(ns % second)};
    return formatTime(t, decimals);
}

// The header's value columns: the configured names, then v<index>.
void valueColumns(std::ostream& out, std::size_t count, const std::vector<std::string>& names) {
    for (std::size_t c = 0; c < count; ++c) {
        if (c < names.size())
            out << ',' << names[c];
        else
            out << ",v" << c;
    }
}

void writeSvRows(std::ostream& out, const StreamRef& stream, const StreamTable& table, int decimals,
                 const std::vector<std::string>& names) {
    // Only data sets that are not whole 8-byte entries get the column, so
    // that ordinary streams keep their table.
    const bool withRest = stream.sv->seqDataBytes % 8 != 0;
    const TavStream::SamplingClock& clock = table.clocks().of(*stream.sv);
    out << "time,sample_time,smpCnt";
    valueColumns(out, stream.sv->valuesPerAsdu, names);
    if (withRest)
        out << ",rest";
    out << '\n';
    TavIec61850Parser::SeqDataRests rests;
    for (const auto& placed : StreamTable::packagesInTimeOrder(stream)) {
        const std::string time = formatTime(placed.package.time, decimals);
        const auto asdus = TavIec61850Parser::SvParser::parseASDUWithRestsFromFile(
            *placed.path, placed.package.offset, rests);
        const std::int64_t arrival = TavStream::toNanoseconds(placed.package.time);
        const auto own = std::count_if(asdus.begin(), asdus.end(),
                                       [&](const auto& a) { return a.svId == stream.sv->svId; });
        std::size_t index = 0;
        for (std::size_t a = 0; a < asdus.size(); ++a) {
            out << time << ',';
            // ASDUs of other data sets in the frame are not this stream's samples.
            if (asdus[a].svId == stream.sv->svId)
                out << sampleTime(clock.instant(arrival, asdus[a].counters.smpCnt, index++,
                                                static_cast<std::size_t>(own)),
                                  std::max(decimals, 9));
            out << ',' << asdus[a].counters.smpCnt;
            for (const auto& v : asdus[a].values)
                out << ',' << v.value;
            if (withRest)
                out << ',' << hex(rests[a]);
            out << '\n';
        }
    }
}

std::string numberText(float v) {
    if (std::isnan(v))
        return "nan";
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(v));
    return text;
}

void writeGooseRows(std::ostream& out, const StreamRef& stream, int decimals,
                    const std::vector<std::string>& names) {
    out << "time,stNum,sqNum";
    valueColumns(out, stream.goose->entries, names);
    out << '\n';
    for (const auto& placed : StreamTable::packagesInTimeOrder(stream)) {
        const auto pdu = TavIec61850Parser::GooseParser::parseGoosePDUFromFile(
            *placed.path, placed.package.offset);
        out << formatTime(placed.package.time, decimals) << ',' << pdu.stNum << ',' << pdu.sqNum;
        for (float v : TavIec61850Parser::GooseParser::parseBooleanValues(pdu.data))
            out << ',' << numberText(v);
        out << '\n';
    }
}

} // namespace

void writeValues(std::ostream& out, const StreamRef& stream, const StreamTable& table,
                 int timeDecimals, const std::vector<std::string>& names) {
    if (stream.sv)
        writeSvRows(out, stream, table, timeDecimals, names);
    else
        writeGooseRows(out, stream, timeDecimals, names);
}

} // namespace TavInspect
