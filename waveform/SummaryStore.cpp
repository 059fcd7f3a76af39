#include "waveform/SummaryStore.h"

namespace TavWaveform {

namespace {
constexpr std::size_t kMaxSummaries = 256;
} // namespace

SummaryStore::SummaryStore(std::function<void()> onReady)
    : onReady_(std::move(onReady)), worker_([this] { run(); }) {}

SummaryStore::~SummaryStore() {
    {
        std::lock_guard lock(mutex_);
        stop_.store(true);
    }
    wake_.notify_all();
    worker_.join();
}

std::shared_ptr<const SampleSummary> SummaryStore::find(const TavIec61850Parser::Sv& stream,
                                                        const TavStream::SamplingClock& clock) {
    // Known by its file, frame count and first and last offsets: a stream
    // whose frames changed gets a summary of its own.
    const std::string key = SummarySource::keyOf(stream);
    if (key.empty())
        return nullptr;
    std::lock_guard lock(mutex_);
    if (auto it = built_.find(key); it != built_.end())
        return it->second;
    if (queued_.insert(key).second) {
        if (auto source = SummarySource::of(stream, clock))
            queue_.push_back(std::move(*source));
        wake_.notify_all();
    }
    return nullptr;
}

void SummaryStore::run() {
    while (true) {
        SummarySource source;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [&] { return stop_.load() || !queue_.empty(); });
            if (stop_.load())
                return;
            source = std::move(queue_.front());
            queue_.pop_front();
        }
        auto summary = SampleSummary::build(source, stop_);
        if (!summary)
            continue; // left queued: the frames themselves are drawn instead
        {
            std::lock_guard lock(mutex_);
            // Summaries of files long closed are not looked for again; a cap
            // keeps them from piling up over a long session.
            if (built_.size() >= kMaxSummaries) {
                for (const auto& [key, dropped] : built_)
                    queued_.erase(key);
                built_.clear();
            }
            built_[source.key()] = std::make_shared<const SampleSummary>(std::move(*summary));
        }
        onReady_();
    }
}

} // namespace TavWaveform
