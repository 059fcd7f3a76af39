#pragma once

#include "platform/parser/StreamRecords.h"
#include "scl/SclModel.h"

#include <optional>
#include <string>
#include <vector>

namespace TavScl {

// What the capture shows of one stream, in the terms of a control block.
struct SeenStream {
    ControlKind kind = ControlKind::Sv;
    std::string id; // svID, or gocbRef
    std::string goId;
    std::string dstMac;
    std::uint16_t appId = 0;
    std::optional<std::uint16_t> vlanId;      // absent when untagged
    std::optional<std::uint8_t> vlanPriority; // absent when untagged
    std::uint32_t confRev = 0;
    std::string datSet;
    std::uint32_t entries = 0; // SV: values per ASDU; GOOSE: data set members
    std::optional<double> sampleRateHz;
    std::uint32_t asdusPerFrame = 0;
    bool simulation = false;
};

// `rateHz`: the stream's samples per second, when known.
SeenStream seenStream(const TavIec61850Parser::Sv& sv, std::optional<double> rateHz);
SeenStream seenStream(const TavIec61850Parser::Goose& goose);

struct Mismatch {
    std::string field; // "confRev", "appid", "dst" ...
    std::string scl;
    std::string seen;
};

struct MatchedStream {
    std::size_t stream = 0; // index into the streams given
    const ControlBlock* control = nullptr;
    std::vector<Mismatch> mismatches;
};

struct MatchReport {
    std::vector<MatchedStream> matched;
    std::vector<const ControlBlock*> missing; // configured, not seen
    std::vector<std::size_t> unexpected;      // seen, not configured
};

// The control blocks of all the files, each once: a device's ICD or CID
// loaded beside the substation's SCD adds nothing twice.
std::vector<const ControlBlock*> allControls(const std::vector<SclFile>& files);

// A stream belongs to the control block that shares the most of its identity
// (the svID or gocbRef first, then APPID, then destination MAC), at least its
// id or both APPID and MAC; then every configured field is compared.
MatchReport matchStreams(const std::vector<SeenStream>& streams,
                         const std::vector<const ControlBlock*>& controls);

// Samples per second the block configures: a rate per period gives one for
// 50 Hz and one for 60 Hz. Requires the block's smpRate.
std::vector<double> configuredRates(const ControlBlock& c);

} // namespace TavScl
