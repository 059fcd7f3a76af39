#include "tools/summary/MeasureReport.h"

#include "tools/summary/JsonWriter.h"
#include "tools/summary/StreamTable.h"

#include <cstdio>
#include <string>

namespace TavInspect {

namespace {

using namespace TavMeasure;

std::string timeText(std::int64_t ns) {
    constexpr std::int64_t second = 1'000'000'000;
    return formatTime(
        {static_cast<std::uint32_t>(ns / second), static_cast<std::uint32_t>(ns % second)}, 9);
}

void phasor(JsonWriter& json, const Phasor& p) {
    json.beginObject();
    json.key("rms");
    json.number(p.rms);
    json.key("angle");
    json.number(p.angleDeg);
    json.endObject();
}

void optionalNumber(JsonWriter& json, const std::optional<double>& value) {
    if (value)
        json.number(*value);
    else
        json.null();
}

void channel(JsonWriter& json, const ChannelMeasurement& c) {
    json.beginObject();
    json.key("index");
    json.number(static_cast<std::int64_t>(c.spec.index));
    json.key("name");
    json.string(c.spec.name);
    json.key("unit");
    json.string(c.spec.unit());
    json.key("rms");
    json.number(c.rms);
    json.key("dc");
    json.number(c.dc);
    json.key("fundamental");
    phasor(json, c.fundamental);
    json.key("harmonics");
    json.beginObject();
    for (std::size_t h = 2; h < c.harmonics.size(); ++h) {
        json.key(std::to_string(h));
        optionalNumber(json, c.harmonics[h]);
    }
    json.endObject();
    json.key("thd");
    optionalNumber(json, c.thd);
    json.endObject();
}

void sequence(JsonWriter& json, const std::optional<SequenceComponents>& s) {
    if (!s) {
        json.null();
        return;
    }
    json.beginObject();
    json.key("positive");
    phasor(json, s->positive);
    json.key("negative");
    phasor(json, s->negative);
    json.key("zero");
    phasor(json, s->zero);
    json.key("unbalance");
    json.number(s->unbalance);
    json.endObject();
}

void powerFigures(JsonWriter& json, const PowerFigures& p) {
    json.beginObject();
    json.key("p");
    json.number(p.p);
    json.key("q");
    json.number(p.q);
    json.key("s");
    json.number(p.s);
    json.key("pf");
    json.number(p.pf);
    json.endObject();
}

void power(JsonWriter& json, const std::optional<ThreePhasePower>& p) {
    if (!p) {
        json.null();
        return;
    }
    json.beginObject();
    const char* phases[] = {"a", "b", "c"};
    for (std::size_t k = 0; k < 3; ++k) {
        json.key(phases[k]);
        powerFigures(json, p->phases[k]);
    }
    json.key("total");
    powerFigures(json, p->total);
    json.endObject();
}

void stream(JsonWriter& json, const StreamMeasurement& m) {
    json.beginObject();
    json.key("svID");
    json.string(m.svId);
    json.key("appid");
    json.number(static_cast<std::int64_t>(m.appId));
    json.key("rate");
    json.number(m.rateHz);
    json.key("frequency");
    if (m.cycles > 0)
        json.number(m.frequencyHz);
    else
        json.null();
    json.key("window");
    json.beginObject();
    json.key("from");
    json.rawNumber(timeText(m.fromNs));
    json.key("to");
    json.rawNumber(timeText(m.toNs));
    json.key("cycles");
    json.number(static_cast<std::int64_t>(m.cycles));
    json.endObject();
    json.key("channels");
    json.beginArray();
    for (const auto& c : m.channels)
        channel(json, c);
    json.endArray();
    json.key("sequence");
    json.beginObject();
    json.key("current");
    sequence(json, m.current);
    json.key("voltage");
    sequence(json, m.voltage);
    json.endObject();
    json.key("power");
    power(json, m.power);
    json.endObject();
}

} // namespace

void writeMeasureJson(std::ostream& out, const std::vector<StreamMeasurement>& all) {
    JsonWriter json(out);
    json.beginObject();
    json.key("streams");
    json.beginArray();
    for (const auto& m : all)
        stream(json, m);
    json.endArray();
    json.endObject();
    out << '\n';
}

void writeMeasureText(std::ostream& out, const std::vector<StreamMeasurement>& all) {
    char line[256];
    for (const auto& m : all) {
        std::snprintf(line, sizeof line,
                      "SV svID \"%s\" appid 0x%04x rate %g frequency %.4f Hz, %zu cycles from %s\n",
                      m.svId.c_str(), m.appId, m.rateHz, m.frequencyHz, m.cycles,
                      timeText(m.fromNs).c_str());
        out << line;
        for (const auto& c : m.channels) {
            std::snprintf(line, sizeof line,
                          "  %-6s rms %.6g %s  fundamental %.6g %s at %.2f deg  thd %.3f %%\n",
                          c.spec.name.c_str(), c.rms, c.spec.unit(), c.fundamental.rms,
                          c.spec.unit(), c.fundamental.angleDeg, c.thd.value_or(0.0));
            out << line;
        }
    }
}

} // namespace TavInspect
