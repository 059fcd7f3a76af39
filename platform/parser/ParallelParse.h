#pragma once

#include "platform/parser/ContainerReader.h"
#include "platform/parser/PcapParser.h"
#include "platform/parser/ProgressReporter.h"

#include <atomic>
#include <string>

namespace TavIec61850Parser {

// Parses one capture on several cores. The calling thread walks the record
// headers, which is all that finds where a record starts, and cuts the file
// into ranges of records; `workers` threads decode the ranges, each into a
// database of its own; the calling thread merges those into `db` in file
// order. The result is what one thread reading the whole file gives, and so
// are progress, cancel and a file that breaks off: what was read before stays.
struct ParallelParse {
    const std::string& path;
    Db& db;
    const Filter& filter;
    const std::atomic<bool>& cancel;
    ProgressReporter& progress;
    FileStats& stats;
    unsigned workers;

    // False when cancelled.
    bool run(ContainerReader& reader);
};

} // namespace TavIec61850Parser
