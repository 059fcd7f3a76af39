#pragma once

#include "platform/parser/StreamIndex.h"

#include <string>
#include <vector>

namespace TavIec61850Parser {

// Moves what one range of a capture gave into the database, after the ranges
// before it: streams are added in the order the range met them, packages
// appended in capture order, svIDs in the order first seen, time bounds and
// order flags joined. Merging the ranges of a file one by one in file order
// gives what parsing the whole file in one go gives. `range` is emptied.
class RangeMerge {
public:
    RangeMerge(Db& db, std::string path) : db_(db), path_(std::move(path)) {}

    void add(Db& range, const std::vector<StreamIndex::Touched>& touched);
    // Gives back the vector slack of every file touched.
    void finish();

private:
    const PackageFile& fileOf(PackageFiles& files);
    void mergeSv(Db& range, const Sv& from);
    void mergeGoose(Db& range, const Goose& from);

    Db& db_;
    std::string path_;
    std::vector<const PackageFile*> touched_;
};

} // namespace TavIec61850Parser
