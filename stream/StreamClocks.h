#pragma once

#include "platform/parser/StreamRecords.h"
#include "stream/SamplingClock.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace TavStream {

// The sampling clock of each SV stream of one state of the capture database.
// A clock needs the whole stream (its fastest frame, its restarts), never just
// the frames of a window, so that a sample's instant does not move with the
// view. Replaced whenever the database changes: it is keyed by stream record.
class StreamClocks {
public:
    StreamClocks() = default;
    // The streams of a database state: all are surveyed together, on the
    // first ask, when surveyAll was not called first.
    explicit StreamClocks(std::vector<const TavIec61850Parser::Sv*> streams)
        : streams_(std::move(streams)) {}
    StreamClocks(const StreamClocks&) = delete;
    StreamClocks& operator=(const StreamClocks&) = delete;
    ~StreamClocks() { stop(); }

    // Surveys the streams given at construction on a thread of its own, so
    // that a load ends at the parse's pace; `of` waits for it.
    void startSurvey();
    // Cancels and joins that survey: the database is about to change, and
    // nothing may be surveyed of it from here on.
    void stop();

    // Surveys `streams` spread over every core, then lets the synchronised
    // ones of one rate share the top of the second. Stops early on `cancel`.
    void surveyAll(const std::vector<const TavIec61850Parser::Sv*>& streams,
                   const std::atomic<bool>* cancel = nullptr);
    // The clock of `stream`; surveyed now when it was not yet (with all the
    // streams given at construction, so that they are aligned).
    const SamplingClock& of(const TavIec61850Parser::Sv& stream);
    // False while a survey runs: `of` would wait for it.
    bool ready();

private:
    void joinSurvey();
    void alignSynchronised();
    void store(const std::vector<const TavIec61850Parser::Sv*>& streams,
               std::vector<SamplingClock>& surveyed);

    std::vector<const TavIec61850Parser::Sv*> streams_;

    std::mutex mutex_;
    std::condition_variable surveyed_;
    bool surveying_ = false;
    std::unordered_map<const TavIec61850Parser::Sv*, SamplingClock> clocks_;
    std::atomic<bool> cancel_{false};
    std::thread survey_;
};

// One pass over the stream's frames in time order across its files, reading
// the counters of its own ASDUs only. Frames that no longer read end it.
SamplingClock surveyStream(const TavIec61850Parser::Sv& stream,
                           const std::atomic<bool>* cancel = nullptr);

std::vector<const TavIec61850Parser::Sv*> svStreams(const TavIec61850Parser::Db& db);

} // namespace TavStream
