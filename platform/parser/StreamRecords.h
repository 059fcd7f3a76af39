#pragma once

#include "platform/parser/Identifiers.h"
#include "platform/parser/PackageFile.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace TavIec61850Parser {

// 802.1Q / 802.1ad tags of a stream's frames. A priority tag carries id 0.
struct VlanTag {
    std::optional<std::uint16_t> id;      // the outer tag's VLAN ID
    std::optional<std::uint16_t> innerId; // the inner tag's, for double-tagged frames
    std::uint8_t priority = 0;
};

// The HSR tag (EtherType 0x892F) of a stream's first frame.
struct HsrTag {
    std::optional<char> line; // 'A' or 'B', from the tag's path identifier
    std::uint8_t pathId = 0;
    std::uint16_t sequence = 0;
};

// The PRP redundancy control trailer (suffix 0x88FB) of a stream's first frame.
struct PrpTrailer {
    std::optional<char> line; // 'A' or 'B', from the LAN identifier
    std::uint8_t lanId = 0;
    std::uint16_t sequence = 0;
};

// The Ethernet part that SV and GOOSE records share, in this order.
struct EthernetPart {
    std::string srcMac; // "aa:bb:cc:dd:ee:ff"
    std::optional<VlanTag> vlan;
    std::optional<HsrTag> hsr;
    std::optional<PrpTrailer> prp;
};

// The packages of one stream in one file inside a time window, in capture order.
using SvFilteredPackages = std::map<const PackageFile*, std::vector<const Package*>>;

struct FilteredPackagesResult {
    std::vector<const Package*> packages;
    // Index, within the file's packages, of the first package in the window
    // (the file's package count when none is).
    std::uint64_t firstIndex = 0;
    // The last package of the stream in that file before the window, or null.
    const Package* lastBefore = nullptr;
};
using GooseFilteredPackages = std::map<const PackageFile*, FilteredPackagesResult>;

// One SV stream: all frames with the same source and destination MAC, VLAN ID,
// APPID, svID of the first ASDU and confRev.
struct Sv : EthernetPart {
    std::uint16_t appId = 0;
    std::string dstMac;
    bool simulation = false;
    std::string svId;
    std::uint32_t confRev = 0;
    std::string datSet;
    std::uint32_t valuesPerAsdu = 0; // seqData length / 8 in the first ASDU
    std::uint32_t seqDataBytes = 0;  // seqData length in the first ASDU
    std::uint32_t asdusPerFrame = 0; // noASDU of the first frame
    // Every svID seen in the stream's ASDUs, the first ASDU's first.
    mutable std::vector<std::string> asduSvIds;
    mutable PackageFiles files;

    TavIec61850::SvIdentifer identifier() const;
    // Packages with from <= time <= to, per file.
    SvFilteredPackages getfilteredPackages(const Timest& from, const Timest& to) const;
    std::uint64_t packageCount() const;
};

// One GOOSE stream: all frames with the same source and destination MAC, VLAN ID,
// APPID, gocbRef, goID, datSet and confRev.
struct Goose : EthernetPart {
    std::string dstMac;
    std::uint16_t appId = 0;
    bool simulation = false;
    std::string gocbRef;
    std::string datSet;
    std::string goId;
    std::uint32_t confRev = 0;
    std::uint32_t entries = 0;          // top-level allData elements of the first frame
    std::uint64_t numDatSetEntries = 0; // what the first frame declares; may differ
    mutable PackageFiles files;

    TavIec61850::GooseIdentifer identifier() const;
    // Packages with from <= time <= to, per file, with the last one before.
    GooseFilteredPackages getfilteredPackages(const Timest& from, const Timest& to) const;
    std::uint64_t packageCount() const;
};

struct SvHash {
    std::size_t operator()(const Sv& s) const;
};
struct SvEqual {
    bool operator()(const Sv& a, const Sv& b) const { return a.identifier() == b.identifier(); }
};
struct GooseHash {
    std::size_t operator()(const Goose& g) const;
};
struct GooseEqual {
    bool operator()(const Goose& a, const Goose& b) const {
        return a.identifier() == b.identifier();
    }
};

// All SV streams of a database. Element addresses stay valid until the
// database changes.
struct SvProto {
    std::unordered_set<Sv, SvHash, SvEqual> svs;
    std::uint64_t getSvCount() const { return svs.size(); }
};

// All GOOSE streams of a database.
struct GooseProto {
    std::unordered_set<Goose, GooseHash, GooseEqual> gooses;
    std::uint64_t getGooseCount() const { return gooses.size(); }
};

// The capture database: every stream of every parsed file.
struct Db {
    GooseProto gooseProto;
    SvProto svProto;

    // Removes the file's packages from every stream, and streams left with no file.
    void clearByFileName(const std::string& path);
};

} // namespace TavIec61850Parser
