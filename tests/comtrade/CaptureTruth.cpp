#include "tests/comtrade/CaptureTruth.h"

#include "platform/parser/GooseParser.h"
#include "platform/parser/PcapParser.h"
#include "platform/parser/SvParser.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <stdexcept>

namespace TavTest {

using namespace TavIec61850Parser;

namespace {

template <typename Record> std::vector<std::pair<Package, std::string>> ordered(const Record& r) {
    std::vector<std::pair<Package, std::string>> all;
    for (const auto& f : r.files)
        for (const auto& p : f.packages)
            all.emplace_back(p, f.path);
    std::stable_sort(all.begin(), all.end(),
                     [](const auto& a, const auto& b) { return a.first.time < b.first.time; });
    return all;
}

std::int64_t nanos(const Timest& t) {
    return static_cast<std::int64_t>(t.seconds) * 1'000'000'000 + t.nanoseconds;
}

} // namespace

const Sv& Capture::sv(const std::string& svId) const {
    for (const auto& s : db.svProto.svs)
        if (s.svId == svId)
            return s;
    throw std::runtime_error("no SV stream " + svId);
}

const Goose& Capture::goose(const std::string& goId) const {
    for (const auto& g : db.gooseProto.gooses)
        if (g.goId == goId)
            return g;
    throw std::runtime_error("no GOOSE stream " + goId);
}

std::unique_ptr<Capture> loadCapture(const std::vector<std::string>& paths) {
    auto capture = std::make_unique<Capture>();
    const std::atomic<bool> cancel{false};
    for (const auto& path : paths) {
        FileStats stats;
        PcapParser::parseFile(
            path, capture->db, Filter{}, cancel, [](double) {}, stats);
    }
    return capture;
}

std::vector<TrueSample> trueSamples(const Sv& stream, double rateHz) {
    std::vector<TrueSample> samples;
    for (const auto& [p, path] : ordered(stream)) {
        const auto asdus = SvParser::parseASDUFromFile(path, p.offset);
        for (std::size_t i = 0; i < asdus.size(); ++i) {
            TrueSample s;
            const double later = static_cast<double>(asdus.size() - 1 - i);
            s.ns = nanos(p.time) - std::llround(later * 1e9 / rateHz);
            s.smpCnt = asdus[i].counters.smpCnt;
            for (const auto& v : asdus[i].values)
                s.values.push_back(v.value);
            samples.push_back(s);
        }
    }
    return samples;
}

std::vector<TrueState> trueStates(const Goose& stream) {
    std::vector<TrueState> states;
    for (const auto& [p, path] : ordered(stream)) {
        const auto pdu = GooseParser::parseGoosePDUFromFile(path, p.offset);
        states.push_back({nanos(p.time), GooseParser::parseBooleanValues(pdu.data)});
    }
    return states;
}

const TrueState* stateAt(const std::vector<TrueState>& states, std::int64_t ns) {
    const TrueState* found = nullptr;
    for (const auto& s : states)
        if (s.ns <= ns)
            found = &s;
    return found;
}

std::string dayAndTime(std::int64_t ns) {
    const std::time_t seconds = ns / 1'000'000'000;
    std::tm t{};
    gmtime_r(&seconds, &t);
    char text[40];
    std::strftime(text, sizeof text, "%d/%m/%Y,%H:%M:%S", &t);
    const auto micro = std::to_string(1'000'000 + (ns % 1'000'000'000) / 1000).substr(1);
    return std::string(text) + "." + micro;
}

} // namespace TavTest
