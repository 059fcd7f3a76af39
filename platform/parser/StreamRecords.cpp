#include "platform/parser/StreamRecords.h"

#include <functional>
#include <string_view>

namespace TavIec61850Parser {

namespace {

std::optional<std::uint16_t> vlanIdOf(const EthernetPart& e) {
    return e.vlan ? e.vlan->id : std::nullopt;
}

void mix(std::size_t& seed, std::size_t value) {
    seed ^= value + 0x9E3779B97F4A7C15ull + (seed << 6) + (seed >> 2);
}

std::size_t hashOf(std::string_view s) {
    return std::hash<std::string_view>{}(s);
}

template <class Stream> std::uint64_t countPackages(const Stream& s) {
    std::uint64_t n = 0;
    for (const PackageFile& f : s.files)
        n += f.packages.size();
    return n;
}

template <class Set> void clearFile(Set& streams, const std::string& path) {
    const PackageFile key(path);
    for (auto it = streams.begin(); it != streams.end();) {
        it->files.erase(key);
        if (it->files.empty())
            it = streams.erase(it);
        else
            ++it;
    }
}

} // namespace

TavIec61850::SvIdentifer Sv::identifier() const {
    return {srcMac, dstMac, vlanIdOf(*this), appId, svId, confRev};
}

TavIec61850::GooseIdentifer Goose::identifier() const {
    return {srcMac, dstMac, vlanIdOf(*this), appId, gocbRef, goId, datSet, confRev};
}

std::uint64_t Sv::packageCount() const {
    return countPackages(*this);
}
std::uint64_t Goose::packageCount() const {
    return countPackages(*this);
}

std::size_t SvHash::operator()(const Sv& s) const {
    std::size_t h = hashOf(s.svId);
    mix(h, hashOf(s.srcMac));
    mix(h, hashOf(s.dstMac));
    mix(h, s.appId);
    mix(h, s.confRev);
    mix(h, vlanIdOf(s).value_or(0xFFFF));
    return h;
}

std::size_t GooseHash::operator()(const Goose& g) const {
    std::size_t h = hashOf(g.gocbRef);
    mix(h, hashOf(g.goId));
    mix(h, hashOf(g.datSet));
    mix(h, hashOf(g.srcMac));
    mix(h, hashOf(g.dstMac));
    mix(h, g.appId);
    mix(h, g.confRev);
    mix(h, vlanIdOf(g).value_or(0xFFFF));
    return h;
}

void Db::clearByFileName(const std::string& path) {
    clearFile(svProto.svs, path);
    clearFile(gooseProto.gooses, path);
}

} // namespace TavIec61850Parser
