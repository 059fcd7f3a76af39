#pragma once

#include "platform/parser/Filter.h"
#include "platform/parser/StreamRecords.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

namespace TavIec61850Parser {

// What one parse of one file saw, frame by frame.
struct FileStats {
    std::string format;                // "pcap-us", "pcap-ns", "pcapng"
    std::uint64_t frames = 0;          // every frame record read
    std::uint64_t svFrames = 0;        // well-formed SV frames
    std::uint64_t gooseFrames = 0;     // well-formed GOOSE frames
    std::uint64_t malformedFrames = 0; // SV or GOOSE frames that could not be decoded
    std::uint64_t otherFrames = 0;     // other EtherTypes, 802.3 frames, other link types
    bool compressed = false;           // gzip, read through its inflated copy
};

class PcapParser {
public:
    // Parses one pcap or pcapng file (told apart by magic number) and merges its
    // streams and packages into `db`. Polls `cancel` and returns early when it
    // is set; reports the fraction of the file's bytes read through `progress`.
    // Throws ParseError when the file cannot be read, is not a capture or has a
    // corrupt header; what was read before a truncation stays in `db`.
    static void parseFile(const std::string& path, Db& db, const Filter& filter,
                          const std::atomic<bool>& cancel, std::function<void(double)> progress);

    // The same, also telling what was counted.
    static void parseFile(const std::string& path, Db& db, const Filter& filter,
                          const std::atomic<bool>& cancel, std::function<void(double)> progress,
                          FileStats& stats);

    // The same with `workers` threads decoding frames (0: one per core); any
    // count gives the same database.
    static void parseFile(const std::string& path, Db& db, const Filter& filter,
                          const std::atomic<bool>& cancel, std::function<void(double)> progress,
                          FileStats& stats, unsigned workers);

    // The file's entry is gone: drops what was kept to read its frames again,
    // the inflated copy of a compressed file included.
    static void forgetFile(const std::string& path);
};

} // namespace TavIec61850Parser
