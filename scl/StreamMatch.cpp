#include "scl/StreamMatch.h"

#include <cmath>
#include <cstdio>
#include <set>

namespace TavScl {

namespace {

std::string hex(unsigned value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, value);
    return text;
}

std::string boolText(bool b) {
    return b ? "true" : "false";
}

int identityScore(const SeenStream& s, const ControlBlock& c) {
    if (s.kind != c.kind)
        return 0;
    const bool id = s.id == (c.kind == ControlKind::Sv ? c.id : c.reference);
    const bool appId = c.address && c.address->appId == s.appId;
    const bool mac = c.address && c.address->mac == s.dstMac;
    if (!id && !(appId && mac))
        return 0;
    return (id ? 4 : 0) + (appId ? 2 : 0) + (mac ? 1 : 0);
}

std::string rateText(const ControlBlock& c) {
    const char* unit = c.smpMod == SampleMode::PerPeriod   ? " per period"
                       : c.smpMod == SampleMode::PerSecond ? " per second"
                                                           : " seconds per sample";
    return std::to_string(*c.smpRate) + unit;
}

void compareRate(const SeenStream& s, const ControlBlock& c, std::vector<Mismatch>& out) {
    if (!c.smpRate || !s.sampleRateHz || *s.sampleRateHz <= 0)
        return;
    for (double rate : configuredRates(c))
        if (std::abs(rate - *s.sampleRateHz) <= rate * 0.005)
            return;
    char seen[32];
    std::snprintf(seen, sizeof seen, "%.0f per second", *s.sampleRateHz);
    out.push_back({"smpRate", rateText(c), seen});
}

void compareAddress(const SeenStream& s, const Address& a, std::vector<Mismatch>& out) {
    if (!a.mac.empty() && a.mac != s.dstMac)
        out.push_back({"dst", a.mac, s.dstMac});
    if (a.appId && *a.appId != s.appId)
        out.push_back({"appid", hex(*a.appId, 4), hex(s.appId, 4)});
    // An address with VLAN-ID 0 (or none) means untagged or priority-tagged frames.
    const unsigned vlan = a.vlanId.value_or(0);
    const unsigned seenVlan = s.vlanId.value_or(0);
    if (vlan != seenVlan)
        out.push_back({"vlan", hex(vlan, 3), s.vlanId ? hex(seenVlan, 3) : "none"});
    if (a.vlanPriority && s.vlanPriority && *a.vlanPriority != *s.vlanPriority)
        out.push_back(
            {"vlan_priority", std::to_string(*a.vlanPriority), std::to_string(*s.vlanPriority)});
}

std::vector<Mismatch> compare(const SeenStream& s, const ControlBlock& c) {
    std::vector<Mismatch> out;
    const bool sv = c.kind == ControlKind::Sv;
    if (sv && s.id != c.id)
        out.push_back({"svID", c.id, s.id});
    if (!sv && s.id != c.reference)
        out.push_back({"gocbRef", c.reference, s.id});
    if (!sv && s.goId != c.id)
        out.push_back({"goID", c.id, s.goId});
    if (c.address)
        compareAddress(s, *c.address, out);
    if (c.confRev && *c.confRev != s.confRev)
        out.push_back({"confRev", std::to_string(*c.confRev), std::to_string(s.confRev)});
    // An SV stream need not name its data set on the wire.
    if (!c.dataSetReference.empty() && !(sv && s.datSet.empty()) && c.dataSetReference != s.datSet)
        out.push_back({"datSet", c.dataSetReference, s.datSet});
    if (c.dataSet) {
        const std::size_t entries = c.channelNames().size();
        if (entries != s.entries)
            out.push_back({"entries", std::to_string(entries), std::to_string(s.entries)});
    }
    if (sv)
        compareRate(s, c, out);
    if (sv && c.nofAsdu && *c.nofAsdu != s.asdusPerFrame)
        out.push_back({"nofASDU", std::to_string(*c.nofAsdu), std::to_string(s.asdusPerFrame)});
    // A configured stream in service is no simulation.
    if (s.simulation)
        out.push_back({"simulation", boolText(false), boolText(true)});
    return out;
}

void fillEthernet(SeenStream& s, const TavIec61850Parser::EthernetPart& e) {
    if (e.vlan) {
        s.vlanId = e.vlan->id.value_or(0);
        s.vlanPriority = e.vlan->priority;
    }
}

} // namespace

SeenStream seenStream(const TavIec61850Parser::Sv& sv, std::optional<double> rateHz) {
    SeenStream s;
    s.kind = ControlKind::Sv;
    s.id = sv.svId;
    s.dstMac = sv.dstMac;
    s.appId = sv.appId;
    fillEthernet(s, sv);
    s.confRev = sv.confRev;
    s.datSet = sv.datSet;
    s.entries = sv.valuesPerAsdu;
    s.sampleRateHz = rateHz;
    s.asdusPerFrame = sv.asdusPerFrame;
    s.simulation = sv.simulation;
    return s;
}

SeenStream seenStream(const TavIec61850Parser::Goose& goose) {
    SeenStream s;
    s.kind = ControlKind::Goose;
    s.id = goose.gocbRef;
    s.goId = goose.goId;
    s.dstMac = goose.dstMac;
    s.appId = goose.appId;
    fillEthernet(s, goose);
    s.confRev = goose.confRev;
    s.datSet = goose.datSet;
    s.entries = goose.entries;
    s.simulation = goose.simulation;
    return s;
}

std::vector<const ControlBlock*> allControls(const std::vector<SclFile>& files) {
    std::vector<const ControlBlock*> controls;
    std::set<std::pair<ControlKind, std::string>> seen;
    for (const SclFile& f : files)
        for (const ControlBlock& c : f.controls)
            if (seen.insert({c.kind, c.reference}).second)
                controls.push_back(&c);
    return controls;
}

MatchReport matchStreams(const std::vector<SeenStream>& streams,
                         const std::vector<const ControlBlock*>& controls) {
    MatchReport report;
    std::vector<bool> used(controls.size(), false);
    for (std::size_t i = 0; i < streams.size(); ++i) {
        int best = 0;
        std::size_t chosen = 0;
        for (std::size_t k = 0; k < controls.size(); ++k) {
            const int score = identityScore(streams[i], *controls[k]);
            if (score > best) {
                best = score;
                chosen = k;
            }
        }
        if (best == 0) {
            report.unexpected.push_back(i);
            continue;
        }
        used[chosen] = true;
        report.matched.push_back({i, controls[chosen], compare(streams[i], *controls[chosen])});
    }
    for (std::size_t k = 0; k < controls.size(); ++k)
        if (!used[k])
            report.missing.push_back(controls[k]);
    return report;
}

// Samples per second the block configures: per-period rates fit 50 or 60 Hz.
std::vector<double> configuredRates(const ControlBlock& c) {
    const double r = *c.smpRate;
    switch (c.smpMod) {
    case SampleMode::PerSecond:
        return {r};
    case SampleMode::SecondsPerSample:
        return {r > 0 ? 1.0 / r : 0.0};
    case SampleMode::PerPeriod:
        break;
    }
    return {r * 50, r * 60};
}

} // namespace TavScl
