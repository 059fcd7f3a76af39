#include "health/HealthCounts.h"
#include "health/StreamChecks.h"
#include "model/Converters.h"
#include "tools/summary/JsonWriter.h"
#include "tools/summary/Reports.h"

#include <cstdio>

namespace TavInspect {

namespace {

using TavHealth::StreamHealth;

StreamHealth check(const StreamTable& table, const StreamRef& s) {
    return s.sv ? TavHealth::checkStream(*s.sv, &table.clocks().of(*s.sv))
                : TavHealth::checkStream(*s.goose);
}

void number(JsonWriter& json, const char* key, std::uint64_t value) {
    json.key(key);
    json.number(static_cast<std::int64_t>(value));
}

// Seconds to the nanosecond, without the binary fraction's tail.
void seconds(JsonWriter& json, double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.9f", value);
    json.rawNumber(text);
}

void numbers(JsonWriter& json, const char* key, const auto& values) {
    json.key(key);
    json.beginArray();
    for (const auto v : values)
        json.number(static_cast<std::int64_t>(v));
    json.endArray();
}

void writeSvDetails(JsonWriter& json, const TavHealth::SvHealth& sv) {
    number(json, "smpcnt_wrap", sv.smpcntWrap);
    json.key("smpcnt_nominal_wrap");
    if (sv.nominalWrap)
        json.number(static_cast<std::int64_t>(*sv.nominalWrap));
    else
        json.null();
    json.key("sample_rate");
    seconds(json, sv.sampleRate);
    number(json, "asdus_per_frame", sv.asdusPerFrame);
    numbers(json, "smpsynch", sv.smpsynchValues);
    json.key("quality");
    json.beginArray();
    for (std::size_t c = 0; c < sv.quality.size(); ++c) {
        const auto& q = sv.quality[c];
        json.beginObject();
        number(json, "channel", c + 1);
        number(json, "invalid", q.invalid);
        number(json, "questionable", q.questionable);
        number(json, "test", q.test);
        number(json, "derived", q.derived);
        number(json, "operator_blocked", q.operatorBlocked);
        json.endObject();
    }
    json.endArray();
    const std::pair<const char*, double> timing[] = {
        {"interval_median", sv.timing.median},   {"interval_p99", sv.timing.p99},
        {"interval_largest", sv.timing.largest}, {"transfer_median", sv.transfer.median},
        {"transfer_p99", sv.transfer.p99},       {"transfer_largest", sv.transfer.largest}};
    for (const auto& [key, value] : timing) {
        json.key(key);
        seconds(json, value);
    }
}

void writeGooseDetails(JsonWriter& json, const TavHealth::GooseHealth& goose, int decimals) {
    numbers(json, "confRev_seen", goose.confRevs);
    json.key("retransmissions");
    json.beginArray();
    for (const auto& r : goose.retransmissions) {
        json.beginObject();
        json.key("time");
        json.rawNumber(formatTime(r.time, decimals));
        json.key("intervals");
        json.beginArray();
        for (double i : r.intervals)
            seconds(json, i);
        json.endArray();
        json.endObject();
    }
    json.endArray();
}

void writeHealth(JsonWriter& json, const StreamHealth& h, int decimals) {
    json.key("health");
    json.beginObject();
    number(json, "frames", h.frames);
    for (const auto& c : TavHealth::healthCounts(h))
        number(json, c.name, c.value);
    if (h.sv)
        writeSvDetails(json, *h.sv);
    if (h.goose)
        writeGooseDetails(json, *h.goose, decimals);
    number(json, "events_total", h.eventCount);
    json.key("events");
    json.beginArray();
    for (const auto& e : h.events) {
        json.beginObject();
        json.key("time");
        json.rawNumber(formatTime(e.time, decimals));
        json.key("kind");
        json.string(e.kind);
        json.key("text");
        json.string(e.text);
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

std::string identity(const StreamRef& s) {
    std::string text = std::string(s.kind()) + " src " + s.ethernet().srcMac + " dst " +
                       s.dstMac() + " appid " + TavNA::Converters::intToHexString(s.appId());
    if (s.sv)
        return text + " svID " + JsonWriter::escape(s.sv->svId);
    return text + " goID " + JsonWriter::escape(s.goose->goId) + " gocbRef " +
           JsonWriter::escape(s.goose->gocbRef);
}

} // namespace

void writeHealthText(std::ostream& out, const StreamTable& table) {
    for (const auto& s : table.streams()) {
        const StreamHealth h = check(table, s);
        const std::string remarks = TavHealth::remarksText(h);
        const std::string notes = TavHealth::notesText(h);
        out << identity(s) << " packets " << s.packets() << ": "
            << (remarks.empty() ? "no remarks" : remarks)
            << (notes.empty() ? "" : " (" + notes + ")") << '\n';
        const int decimals = table.timeDecimals(s);
        for (const auto& e : h.events)
            out << "  " << formatTime(e.time, decimals) << ' ' << e.kind << ' ' << e.text << '\n';
        if (h.eventCount > h.events.size())
            out << "  ... " << h.eventCount - h.events.size() << " more events\n";
    }
}

void writeHealthJson(std::ostream& out, const StreamTable& table) {
    JsonWriter json(out);
    json.beginObject();
    json.key("streams");
    json.beginArray();
    for (const auto& s : table.streams()) {
        json.beginObject();
        writeStreamFields(json, table, s);
        writeHealth(json, check(table, s), table.timeDecimals(s));
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

} // namespace TavInspect
