#pragma once

#include "platform/parser/PcapParser.h"
#include "platform/parser/StreamRecords.h"
#include "stream/StreamClocks.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace TavInspect {

// One stream of the database, either kind.
struct StreamRef {
    const TavIec61850Parser::Sv* sv = nullptr;
    const TavIec61850Parser::Goose* goose = nullptr;

    const TavIec61850Parser::EthernetPart& ethernet() const;
    const char* kind() const { return sv ? "SV" : "GOOSE"; }
    const std::string& dstMac() const { return sv ? sv->dstMac : goose->dstMac; }
    std::uint16_t appId() const { return sv ? sv->appId : goose->appId; }
    std::uint32_t confRev() const { return sv ? sv->confRev : goose->confRev; }
    bool simulation() const { return sv ? sv->simulation : goose->simulation; }
    const TavIec61850Parser::PackageFiles& files() const { return sv ? sv->files : goose->files; }
    std::uint64_t packets() const { return sv ? sv->packageCount() : goose->packageCount(); }
    TavIec61850Parser::Timest first() const;
    TavIec61850Parser::Timest last() const;
};

// A package with the file it came from, for reading frames back in time order.
struct PlacedPackage {
    TavIec61850Parser::Package package;
    const std::string* path = nullptr;
};

// What the inspector loaded: the database, the statistics of each file in the
// order given, and the streams sorted by kind, source, destination, APPID and
// identifier.
class StreamTable {
public:
    StreamTable() = default;
    // The inspector keeps no inflated copy of a compressed file after it ends.
    ~StreamTable();
    StreamTable(const StreamTable&) = delete;
    StreamTable& operator=(const StreamTable&) = delete;

    // Parses the files in order. A file that cannot be read at all throws its
    // ParseError; one that breaks off after its header keeps what was read and
    // leaves a warning.
    void load(const std::vector<std::string>& paths);
    // "file: reason" of each file read only in part.
    const std::vector<std::string>& warnings() const { return warnings_; }

    const std::vector<TavIec61850Parser::FileStats>& fileStats() const { return stats_; }
    const std::vector<std::string>& paths() const { return paths_; }
    const std::vector<StreamRef>& streams() const { return streams_; }
    // The sampling clocks of every SV stream, as the window has them.
    TavStream::StreamClocks& clocks() const { return *clocks_; }

    // Decimals that show the stream's times exactly: 9 when any of its files
    // has nanosecond resolution or a time is not a whole microsecond, else 6.
    int timeDecimals(const StreamRef& stream) const;

    // Every package of the stream over all files, ordered by time (stable).
    static std::vector<PlacedPackage> packagesInTimeOrder(const StreamRef& stream);

private:
    TavIec61850Parser::Db db_;
    std::vector<std::string> paths_;
    std::vector<std::string> opened_; // paths_ and the one whose parse failed
    std::vector<TavIec61850Parser::FileStats> stats_;
    std::map<std::string, bool> nanosecondFiles_;
    std::vector<StreamRef> streams_;
    std::unique_ptr<TavStream::StreamClocks> clocks_ = std::make_unique<TavStream::StreamClocks>();
    std::vector<std::string> warnings_;
};

// "1216909229.658033" with the given number of decimals, from the exact time stamp.
std::string formatTime(const TavIec61850Parser::Timest& t, int decimals);

} // namespace TavInspect
