#pragma once

#include "platform/parser/ContainerReader.h"
#include "platform/parser/PcapParser.h"
#include "platform/parser/ProgressReporter.h"

#include <atomic>
#include <string>

namespace TavIec61850Parser {

// Parses one capture on several cores: the file is cut into ranges, `workers`
// threads (the calling one included) decode them, each into a database of its
// own, and the calling thread merges those into `db` in file order. The
// result is what one thread reading the whole file gives, and so are
// progress, cancel and a file that breaks off: what was read before stays.
// A pcap file is cut by bytes and each worker finds its first record itself,
// a guess checked against where the range before ends; in a pcapng file only
// a walk from the start knows a record's section, so the calling thread walks
// the record headers and hands out the records.
struct ParallelParse {
    const std::string& path;
    Db& db;
    const Filter& filter;
    const std::atomic<bool>& cancel;
    ProgressReporter& progress;
    FileStats& stats;
    unsigned workers;
    const std::uint8_t* data; // the whole file as the reader has it
    std::size_t size;

    // False when cancelled.
    bool run(ContainerReader& reader);
};

} // namespace TavIec61850Parser
