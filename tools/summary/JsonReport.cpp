#include "tools/summary/JsonWriter.h"
#include "tools/summary/Reports.h"
#include "tools/summary/SclCheck.h"

namespace TavInspect {

namespace {

void writeLine(JsonWriter& json, const char* key, const std::optional<char>& line) {
    json.key(key);
    if (line)
        json.string(std::string(1, *line));
    else
        json.null();
}

void writeFiles(JsonWriter& json, const StreamTable& table) {
    json.key("files");
    json.beginArray();
    for (std::size_t i = 0; i < table.paths().size(); ++i) {
        const auto& f = table.fileStats()[i];
        json.beginObject();
        json.key("path");
        json.string(table.paths()[i]);
        json.key("format");
        json.string(f.format);
        json.key("gzip");
        json.boolean(f.compressed);
        const std::pair<const char*, std::uint64_t> counts[] = {
            {"frames", f.frames},
            {"sv_frames", f.svFrames},
            {"goose_frames", f.gooseFrames},
            {"malformed_frames", f.malformedFrames},
            {"other_frames", f.otherFrames}};
        for (const auto& [name, count] : counts) {
            json.key(name);
            json.number(static_cast<std::int64_t>(count));
        }
        json.endObject();
    }
    json.endArray();
}

void writeKindFields(JsonWriter& json, const StreamRef& s) {
    if (s.sv) {
        json.key("svID");
        json.string(s.sv->svId);
        json.key("datSet");
        json.string(s.sv->datSet);
        json.key("values_per_asdu");
        json.number(static_cast<std::int64_t>(s.sv->valuesPerAsdu));
        json.key("asdus_per_frame");
        json.number(static_cast<std::int64_t>(s.sv->asdusPerFrame));
        json.key("seqdata_bytes");
        json.number(static_cast<std::int64_t>(s.sv->seqDataBytes));
        json.key("svIDs");
        json.beginArray();
        for (const std::string& id : s.sv->asduSvIds)
            json.string(id);
        json.endArray();
        return;
    }
    json.key("gocbRef");
    json.string(s.goose->gocbRef);
    json.key("goID");
    json.string(s.goose->goId);
    json.key("datSet");
    json.string(s.goose->datSet);
    json.key("entries");
    json.number(static_cast<std::int64_t>(s.goose->entries));
    json.key("numDatSetEntries");
    json.number(static_cast<std::int64_t>(s.goose->numDatSetEntries));
}

} // namespace

void writeStreamFields(JsonWriter& json, const StreamTable& table, const StreamRef& s) {
    const auto& e = s.ethernet();
    const int decimals = table.timeDecimals(s);
    json.key("kind");
    json.string(s.kind());
    json.key("src");
    json.string(e.srcMac);
    json.key("dst");
    json.string(s.dstMac());
    json.key("vlan");
    if (e.vlan && e.vlan->id)
        json.number(static_cast<std::int64_t>(*e.vlan->id));
    else
        json.null();
    json.key("appid");
    json.number(static_cast<std::int64_t>(s.appId()));
    json.key("confRev");
    json.number(static_cast<std::int64_t>(s.confRev()));
    writeKindFields(json, s);
    json.key("simulation");
    json.boolean(s.simulation());
    json.key("packets");
    json.number(static_cast<std::int64_t>(s.packets()));
    json.key("first");
    json.rawNumber(formatTime(s.first(), decimals));
    json.key("last");
    json.rawNumber(formatTime(s.last(), decimals));
    writeLine(json, "hsr_line", e.hsr ? e.hsr->line : std::nullopt);
    writeLine(json, "prp_line", e.prp ? e.prp->line : std::nullopt);
}

void writeJson(std::ostream& out, const StreamTable& table, const SclCheck* scl) {
    JsonWriter json(out);
    json.beginObject();
    writeFiles(json, table);
    json.key("streams");
    json.beginArray();
    for (const auto& s : table.streams()) {
        json.beginObject();
        writeStreamFields(json, table, s);
        json.endObject();
    }
    json.endArray();
    if (scl)
        writeSclJson(json, *scl);
    json.endObject();
}

} // namespace TavInspect
