#pragma once

#include "waveform/SampleSummary.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>

namespace TavWaveform {

// Min/max summaries of SV streams, built once per stream on a worker thread
// of their own the first time a window far wider than the plot asks for one;
// the interface never waits for a build.
class SummaryStore {
public:
    // `onReady` runs on the worker after a summary is stored: it must only
    // post work to the interface thread.
    explicit SummaryStore(std::function<void()> onReady);
    ~SummaryStore();
    SummaryStore(const SummaryStore&) = delete;
    SummaryStore& operator=(const SummaryStore&) = delete;

    // The stream's summary when built; otherwise its build is queued (once)
    // and null returned. Streams in several files or out of time order get
    // none.
    std::shared_ptr<const SampleSummary> find(const TavIec61850Parser::Sv& stream,
                                              const TavStream::SamplingClock& clock);

private:
    void run();

    std::function<void()> onReady_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<SummarySource> queue_;
    std::set<std::string> queued_; // keys queued or being built
    std::map<std::string, std::shared_ptr<const SampleSummary>> built_;
    std::atomic<bool> stop_{false};
    std::thread worker_;
};

} // namespace TavWaveform
