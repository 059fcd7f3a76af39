#pragma once

#include "scl/StreamMatch.h"
#include "tools/summary/StreamTable.h"

#include <string>
#include <vector>

namespace TavInspect {

// The capture's streams held against the substation's configuration.
class SclCheck {
public:
    // Reads the files (SclError when one cannot be) and matches the table's streams.
    SclCheck(const std::vector<std::string>& paths, const StreamTable& table);
    SclCheck(const SclCheck&) = delete;
    SclCheck& operator=(const SclCheck&) = delete;

    const std::vector<TavScl::SclFile>& files() const { return files_; }
    const TavScl::MatchReport& report() const { return report_; }
    // The channel names of stream `index` by its control block's data set;
    // empty when it matched none.
    std::vector<std::string> channelNames(std::size_t index) const;

private:
    std::vector<TavScl::SclFile> files_;
    TavScl::MatchReport report_;
};

class JsonWriter;
// "scl": {"files", "matched", "missing", "unexpected", "mismatches"} inside an object begun.
void writeSclJson(JsonWriter& json, const SclCheck& check);
// One line per matched, missing and unexpected stream and per mismatch.
void writeSclText(std::ostream& out, const SclCheck& check);

} // namespace TavInspect
