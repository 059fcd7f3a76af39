#pragma once

#include "platform/parser/Timest.h"

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

namespace TavIec61850Parser {

// One capture file in which a stream occurs, with the stream's packages in it.
// A stream keeps its files in an unordered_set, whose elements are const; the
// parser still appends packages to a file it is reading, hence `mutable`.
// The record's address is the module's handle of the file: it never moves while
// it is in the set.
class PackageFile {
public:
    explicit PackageFile(std::string path) : path(std::move(path)) {}

    std::string path; // exactly as given to PcapParser::parseFile

    // The stream's packages in this file, in capture order.
    mutable std::vector<Package> packages;
    // True while every package's time is >= the one before it: windows are then
    // found by binary search; otherwise by a linear scan.
    mutable bool timeOrdered = true;
    mutable Timest earliest{0xFFFFFFFFu, 0};
    mutable Timest latest{0, 0};

    // Time of the stream's earliest and latest package in this file (the first
    // and last packet when time never goes backwards). An empty file gives
    // begin 4294967295 s and end 0 s.
    Timest getBeginTime() const { return earliest; }
    Timest getEndTime() const { return latest; }

    // Appends a package and keeps the time bounds and order flag up to date.
    // Inline: the parse calls it once per frame.
    void append(const Package& p) const {
        if (!packages.empty() && p.time < packages.back().time)
            timeOrdered = false;
        if (p.time < earliest)
            earliest = p.time;
        if (latest < p.time)
            latest = p.time;
        packages.push_back(p);
    }

    // Indices [first, last) of the packages with from <= time <= to, when ordered.
    std::pair<std::size_t, std::size_t> orderedWindow(const Timest& from, const Timest& to) const;
};

struct PackageFileHash {
    std::size_t operator()(const PackageFile& f) const { return std::hash<std::string>{}(f.path); }
};
struct PackageFileEqual {
    bool operator()(const PackageFile& a, const PackageFile& b) const { return a.path == b.path; }
};

using PackageFiles = std::unordered_set<PackageFile, PackageFileHash, PackageFileEqual>;

} // namespace TavIec61850Parser
