#include "tools/summary/StreamTable.h"

#include "platform/parser/ParseError.h"

#include <algorithm>
#include <cstdio>
#include <tuple>

namespace TavInspect {

using TavIec61850Parser::Timest;

const TavIec61850Parser::EthernetPart& StreamRef::ethernet() const {
    if (sv)
        return *sv;
    return *goose;
}

Timest StreamRef::first() const {
    Timest t{0xFFFFFFFFu, 999'999'999u};
    for (const auto& f : files())
        t = std::min(t, f.getBeginTime());
    return t;
}

Timest StreamRef::last() const {
    Timest t{0, 0};
    for (const auto& f : files())
        t = std::max(t, f.getEndTime());
    return t;
}

namespace {

// Kind, source, destination, APPID, identifier; then the rest of the key so
// that the order never depends on the hash sets' iteration.
auto sortKey(const StreamRef& s) {
    const auto& e = s.ethernet();
    const std::uint32_t vlan = e.vlan && e.vlan->id ? *e.vlan->id : 0x10000u;
    const std::string empty;
    return std::make_tuple(std::string(s.kind()), e.srcMac, s.dstMac(), s.appId(),
                           s.sv ? s.sv->svId : s.goose->gocbRef, s.sv ? empty : s.goose->goId,
                           s.sv ? empty : s.goose->datSet, s.confRev(), vlan);
}

} // namespace

StreamTable::~StreamTable() {
    for (const auto& path : opened_)
        TavIec61850Parser::PcapParser::forgetFile(path);
}

void StreamTable::load(const std::vector<std::string>& paths) {
    const std::atomic<bool> cancel{false};
    for (const auto& path : paths) {
        opened_.push_back(path);
        TavIec61850Parser::FileStats stats;
        try {
            TavIec61850Parser::PcapParser::parseFile(
                path, db_, TavIec61850Parser::Filter{}, cancel, [](double) {}, stats);
        } catch (const TavIec61850Parser::ParseError& error) {
            // The format is known once the header was read.
            if (stats.format.empty())
                throw;
            warnings_.push_back(error.what());
        }
        nanosecondFiles_[path] = stats.format.find("ns") != std::string::npos;
        paths_.push_back(path);
        stats_.push_back(std::move(stats));
    }
    streams_.clear();
    for (const auto& sv : db_.svProto.svs)
        streams_.push_back({&sv, nullptr});
    for (const auto& goose : db_.gooseProto.gooses)
        streams_.push_back({nullptr, &goose});
    std::sort(streams_.begin(), streams_.end(),
              [](const StreamRef& a, const StreamRef& b) { return sortKey(a) < sortKey(b); });
    clocks_ = std::make_unique<TavStream::StreamClocks>(TavStream::svStreams(db_));
}

int StreamTable::timeDecimals(const StreamRef& stream) const {
    for (const auto& f : stream.files()) {
        const auto it = nanosecondFiles_.find(f.path);
        if (it != nanosecondFiles_.end() && it->second)
            return 9;
        for (const auto& p : f.packages) {
            if (p.time.nanoseconds % 1000 != 0)
                return 9;
        }
    }
    return 6;
}

std::vector<PlacedPackage> StreamTable::packagesInTimeOrder(const StreamRef& stream) {
    std::vector<const TavIec61850Parser::PackageFile*> files;
    for (const auto& f : stream.files())
        files.push_back(&f);
    std::sort(files.begin(), files.end(),
              [](const auto* a, const auto* b) { return a->path < b->path; });
    std::vector<PlacedPackage> all;
    for (const auto* f : files) {
        for (const auto& p : f->packages)
            all.push_back({p, &f->path});
    }
    std::stable_sort(all.begin(), all.end(), [](const PlacedPackage& a, const PlacedPackage& b) {
        return a.package.time < b.package.time;
    });
    return all;
}

std::string formatTime(const Timest& t, int decimals) {
    char text[32];
    if (decimals == 9)
        std::snprintf(text, sizeof text, "%u.%09u", t.seconds, t.nanoseconds);
    else
        std::snprintf(text, sizeof text, "%u.%06u", t.seconds, t.nanoseconds / 1000);
    return text;
}

} // namespace TavInspect
