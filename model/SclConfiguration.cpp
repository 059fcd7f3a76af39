#include "model/SclConfiguration.h"

#include "scl/SclReader.h"
#include "scl/StreamMatch.h"

#include <algorithm>

namespace TavNA {

namespace {

std::optional<TavScl::MatchedStream> checkOf(const TavScl::SeenStream& stream,
                                             const std::vector<TavScl::SclFile>& files) {
    auto report = TavScl::matchStreams({stream}, TavScl::allControls(files));
    if (report.matched.empty())
        return std::nullopt;
    return std::move(report.matched.front());
}

std::vector<std::string> namesOf(const std::optional<TavScl::MatchedStream>& match) {
    return match ? match->control->channelNames() : std::vector<std::string>();
}

} // namespace

void SclConfiguration::open(const std::string& path) {
    add(TavScl::readSclFile(path));
}

void SclConfiguration::add(TavScl::SclFile file) {
    const auto same = std::find_if(files_.begin(), files_.end(),
                                   [&](const TavScl::SclFile& f) { return f.path == file.path; });
    if (same != files_.end())
        *same = std::move(file);
    else
        files_.push_back(std::move(file));
    signalChanged.emit();
}

std::optional<TavScl::MatchedStream>
SclConfiguration::check(const TavIec61850Parser::Sv& sv) const {
    return checkOf(TavScl::seenStream(sv, std::nullopt), files_);
}

std::optional<TavScl::MatchedStream>
SclConfiguration::check(const TavIec61850Parser::Goose& goose) const {
    return checkOf(TavScl::seenStream(goose), files_);
}

std::vector<std::string> SclConfiguration::channelNames(const TavIec61850Parser::Sv& sv) const {
    return namesOf(check(sv));
}

std::vector<std::string>
SclConfiguration::channelNames(const TavIec61850Parser::Goose& goose) const {
    return namesOf(check(goose));
}

std::vector<std::string>
SclConfiguration::channelDescriptions(const TavIec61850Parser::Sv& sv) const {
    const auto match = check(sv);
    return match ? match->control->channelDescriptions() : std::vector<std::string>();
}

std::vector<std::string>
SclConfiguration::channelDescriptions(const TavIec61850Parser::Goose& goose) const {
    const auto match = check(goose);
    return match ? match->control->channelDescriptions() : std::vector<std::string>();
}

std::vector<const TavScl::ControlBlock*>
SclConfiguration::missing(const std::vector<const TavIec61850Parser::Sv*>& svs,
                          const std::vector<const TavIec61850Parser::Goose*>& gooses) const {
    std::vector<TavScl::SeenStream> seen;
    for (const auto* sv : svs)
        seen.push_back(TavScl::seenStream(*sv, std::nullopt));
    for (const auto* goose : gooses)
        seen.push_back(TavScl::seenStream(*goose));
    return TavScl::matchStreams(seen, TavScl::allControls(files_)).missing;
}

} // namespace TavNA
