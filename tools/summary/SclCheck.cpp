#include "tools/summary/SclCheck.h"

#include "scl/SclReader.h"
#include "tools/summary/JsonWriter.h"

#include <ostream>

namespace TavInspect {

namespace {

std::vector<TavScl::SclFile> readAll(const std::vector<std::string>& paths) {
    std::vector<TavScl::SclFile> files;
    for (const auto& path : paths)
        files.push_back(TavScl::readSclFile(path));
    return files;
}

std::vector<TavScl::SeenStream> seenStreams(const StreamTable& table) {
    std::vector<TavScl::SeenStream> seen;
    for (const StreamRef& s : table.streams()) {
        if (s.sv) {
            const double rate = table.clocks().of(*s.sv).rateHz();
            seen.push_back(
                TavScl::seenStream(*s.sv, rate > 0 ? std::optional(rate) : std::nullopt));
        } else {
            seen.push_back(TavScl::seenStream(*s.goose));
        }
    }
    return seen;
}

void text(JsonWriter& json, const char* key, const std::string& value) {
    json.key(key);
    json.string(value);
}

void index(JsonWriter& json, const char* key, std::size_t value) {
    json.key(key);
    json.number(static_cast<std::int64_t>(value));
}

} // namespace

SclCheck::SclCheck(const std::vector<std::string>& paths, const StreamTable& table)
    : files_(readAll(paths)),
      report_(TavScl::matchStreams(seenStreams(table), TavScl::allControls(files_))) {}

std::vector<std::string> SclCheck::channelNames(std::size_t stream) const {
    for (const auto& m : report_.matched)
        if (m.stream == stream)
            return m.control->channelNames();
    return {};
}

void writeSclJson(JsonWriter& json, const SclCheck& check) {
    const auto& r = check.report();
    json.key("scl");
    json.beginObject();
    json.key("files");
    json.beginArray();
    for (const auto& f : check.files())
        json.string(f.path);
    json.endArray();
    json.key("matched");
    json.beginArray();
    for (const auto& m : r.matched) {
        json.beginObject();
        index(json, "stream", m.stream);
        text(json, "ied", m.control->ied);
        text(json, "control_block", m.control->reference);
        json.endObject();
    }
    json.endArray();
    json.key("missing");
    json.beginArray();
    for (const auto* c : r.missing) {
        json.beginObject();
        text(json, "ied", c->ied);
        text(json, "control_block", c->reference);
        text(json, "kind", TavScl::kindName(c->kind));
        json.endObject();
    }
    json.endArray();
    json.key("unexpected");
    json.beginArray();
    for (std::size_t s : r.unexpected)
        json.number(static_cast<std::int64_t>(s));
    json.endArray();
    json.key("mismatches");
    json.beginArray();
    for (const auto& m : r.matched) {
        for (const auto& x : m.mismatches) {
            json.beginObject();
            index(json, "stream", m.stream);
            text(json, "field", x.field);
            text(json, "scl", x.scl);
            text(json, "seen", x.seen);
            json.endObject();
        }
    }
    json.endArray();
    json.endObject();
}

void writeSclText(std::ostream& out, const SclCheck& check) {
    const auto& r = check.report();
    for (const auto& f : check.files())
        out << "scl " << f.path << " ieds " << f.ieds.size() << " control blocks "
            << f.controls.size() << '\n';
    for (const auto& m : r.matched) {
        out << "scl stream " << m.stream << " matches " << m.control->reference << " of "
            << m.control->ied << '\n';
        for (const auto& x : m.mismatches)
            out << "scl stream " << m.stream << " mismatch " << x.field << ": scl " << x.scl
                << ", seen " << x.seen << '\n';
    }
    for (const auto* c : r.missing)
        out << "scl missing " << TavScl::kindName(c->kind) << ' ' << c->reference << " of "
            << c->ied << '\n';
    for (std::size_t s : r.unexpected)
        out << "scl stream " << s << " is not configured\n";
}

} // namespace TavInspect
