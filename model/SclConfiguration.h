#pragma once

#include "platform/parser/StreamRecords.h"
#include "scl/SclModel.h"
#include "scl/StreamMatch.h"

#include <optional>

#include <sigc++/signal.h>
#include <string>
#include <vector>

namespace TavNA {

// The substation configuration files the user opened, kept until closed or
// the mode switches. Interface thread only.
class SclConfiguration {
public:
    // Reads the file, or reads it again when it is open already. Throws
    // TavScl::SclError naming the file and the line when it cannot be read;
    // what was open stays.
    void open(const std::string& path);
    // A file read elsewhere; it replaces one of the same path.
    void add(TavScl::SclFile file);
    // Forgets every file without telling: a mode switch rebuilds the lists anyway.
    void clear() { files_.clear(); }
    const std::vector<TavScl::SclFile>& files() const { return files_; }

    // The channel names of the stream's control block, by its data set;
    // empty when no block of the configuration is the stream's.
    std::vector<std::string> channelNames(const TavIec61850Parser::Sv& sv) const;
    std::vector<std::string> channelNames(const TavIec61850Parser::Goose& goose) const;
    // The logical node's description of each of those channels ("" where none).
    std::vector<std::string> channelDescriptions(const TavIec61850Parser::Sv& sv) const;
    std::vector<std::string> channelDescriptions(const TavIec61850Parser::Goose& goose) const;

    // The stream's control block and what of it the stream contradicts;
    // nothing when no block of the configuration is the stream's. Without
    // the stream's sampling rate that field is not compared.
    std::optional<TavScl::MatchedStream> check(const TavIec61850Parser::Sv& sv) const;
    std::optional<TavScl::MatchedStream> check(const TavIec61850Parser::Goose& goose) const;

    // The configured control blocks none of the streams is of. Valid until
    // the next add or open.
    std::vector<const TavScl::ControlBlock*>
    missing(const std::vector<const TavIec61850Parser::Sv*>& svs,
            const std::vector<const TavIec61850Parser::Goose*>& gooses) const;

    // After every open.
    sigc::signal<void()> signalChanged;

private:
    std::vector<TavScl::SclFile> files_;
};

} // namespace TavNA
