#include "model/SclConfiguration.h"

#include "scl/SclReader.h"
#include "scl/StreamMatch.h"

#include <algorithm>

namespace TavNA {

namespace {

std::vector<std::string> namesOf(const TavScl::SeenStream& stream,
                                 const std::vector<TavScl::SclFile>& files) {
    const auto report = TavScl::matchStreams({stream}, TavScl::allControls(files));
    if (report.matched.empty())
        return {};
    return report.matched.front().control->channelNames();
}

} // namespace

void SclConfiguration::open(const std::string& path) {
    TavScl::SclFile file = TavScl::readSclFile(path);
    const auto same = std::find_if(files_.begin(), files_.end(),
                                   [&](const TavScl::SclFile& f) { return f.path == path; });
    if (same != files_.end())
        *same = std::move(file);
    else
        files_.push_back(std::move(file));
    signalChanged.emit();
}

std::vector<std::string> SclConfiguration::channelNames(const TavIec61850Parser::Sv& sv) const {
    return namesOf(TavScl::seenStream(sv, std::nullopt), files_);
}

std::vector<std::string>
SclConfiguration::channelNames(const TavIec61850Parser::Goose& goose) const {
    return namesOf(TavScl::seenStream(goose), files_);
}

} // namespace TavNA
