#include "platform/parser/ParallelParse.h"

#include "platform/parser/FrameFiling.h"
#include "platform/parser/RangeMerge.h"
#include "platform/parser/StreamIndex.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace TavIec61850Parser {

namespace {

// A range is a millisecond or two of work: enough to make the hand-over
// cheap, little enough that a cancel waits for almost nothing.
constexpr std::size_t kRangeFrames = 16384;
constexpr std::size_t kRangeBytes = 8 * 1024 * 1024;
constexpr std::uint64_t kPollEvery = 1024;

struct Range {
    std::vector<FrameRecord> records;
    std::size_t endPosition = 0; // the reader's position after the last record
    Db db;
    std::vector<StreamIndex::Touched> touched;
    FileStats stats;
    std::exception_ptr error;
    bool decoded = false;
};

void decode(Range& r, const Filter& filter, const std::string& path) {
    thread_local std::vector<std::uint8_t> cooked;
    StreamIndex index(r.db, filter, path);
    for (const FrameRecord& rec : r.records)
        fileFrame(rec, index, r.stats, cooked);
    r.touched = index.touched();
}

void addCounts(FileStats& to, const FileStats& from) {
    to.svFrames += from.svFrames;
    to.gooseFrames += from.gooseFrames;
    to.malformedFrames += from.malformedFrames;
    to.otherFrames += from.otherFrames;
}

// Ranges waiting for a worker, and the workers. The calling thread is one of
// the workers too: when it is ahead it decodes a range instead of waiting.
// Destroying it stops and joins the threads, so the ranges must outlive it.
class Workers {
public:
    Workers(unsigned count, const Filter& filter, const std::string& path)
        : filter_(filter), path_(path) {
        for (unsigned i = 0; i < count; ++i)
            threads_.emplace_back([this] { work(); });
    }
    ~Workers() {
        {
            std::lock_guard lock(mutex_);
            stop_ = true;
        }
        wake_.notify_all();
        for (std::thread& t : threads_)
            t.join();
    }

    void submit(Range* r) {
        {
            std::lock_guard lock(mutex_);
            waiting_.push_back(r);
        }
        wake_.notify_one();
    }
    void waitDecoded(const Range& r) {
        std::unique_lock lock(mutex_);
        decodedOne_.wait(lock, [&] { return r.decoded; });
    }
    bool isDecoded(const Range& r) {
        std::lock_guard lock(mutex_);
        return r.decoded;
    }
    // Decodes a waiting range on the calling thread; false when none waits.
    bool decodeOneHere() {
        Range* r = take();
        if (!r)
            return false;
        decodeAndMark(*r);
        return true;
    }

private:
    Range* take() {
        std::lock_guard lock(mutex_);
        if (waiting_.empty())
            return nullptr;
        Range* r = waiting_.front();
        waiting_.pop_front();
        return r;
    }
    void decodeAndMark(Range& r) {
        try {
            decode(r, filter_, path_);
        } catch (...) {
            r.error = std::current_exception();
        }
        {
            std::lock_guard lock(mutex_);
            r.decoded = true;
        }
        decodedOne_.notify_all();
    }
    void work() {
        for (;;) {
            Range* r = nullptr;
            {
                std::unique_lock lock(mutex_);
                wake_.wait(lock, [&] { return stop_ || !waiting_.empty(); });
                if (stop_)
                    return;
                r = waiting_.front();
                waiting_.pop_front();
            }
            decodeAndMark(*r);
        }
    }

    const Filter& filter_;
    const std::string& path_;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable decodedOne_;
    std::deque<Range*> waiting_;
    bool stop_ = false;
    std::vector<std::thread> threads_;
};

} // namespace

bool ParallelParse::run(ContainerReader& reader) {
    RangeMerge merge(db, path);
    std::deque<std::unique_ptr<Range>> inFlight; // in file order; outlives the workers
    Workers pool(workers - 1, filter, path);
    const std::size_t maxInFlight = 2 * static_cast<std::size_t>(workers) + 1;

    const auto mergeFront = [&] {
        Range& r = *inFlight.front();
        if (r.error)
            std::rethrow_exception(r.error);
        merge.add(r.db, r.touched);
        stats.frames += r.records.size();
        addCounts(stats, r.stats);
        progress.at(r.endPosition);
        inFlight.pop_front();
    };
    bool cancelled = false;
    // Merges the decoded ranges at the front, waiting until at most `keep`
    // remain undecoded behind them. A cancel leaves the rest unmerged: what
    // was merged is a prefix of the file, as a cancel on one thread leaves.
    const auto drain = [&](std::size_t keep) {
        while (!inFlight.empty() && !cancelled) {
            if (!pool.isDecoded(*inFlight.front())) {
                if (inFlight.size() <= keep)
                    return;
                if (pool.decodeOneHere())
                    continue;
                pool.waitDecoded(*inFlight.front());
            }
            if (cancel.load(std::memory_order_relaxed))
                cancelled = true;
            else
                mergeFront();
        }
    };

    std::exception_ptr readError;
    std::uint64_t walked = 0;
    bool more = true;
    FrameRecord rec;
    try {
        while (more && !cancelled) {
            auto r = std::make_unique<Range>();
            r->records.reserve(kRangeFrames);
            std::size_t bytes = 0;
            try {
                while (r->records.size() < kRangeFrames && bytes < kRangeBytes &&
                       (more = reader.next(rec))) {
                    r->records.push_back(rec);
                    bytes += rec.size;
                    if (++walked % kPollEvery == 0 && cancel.load(std::memory_order_relaxed)) {
                        cancelled = true;
                        break;
                    }
                }
            } catch (...) {
                // What was read before the break stays, as in a parse on one thread.
                readError = std::current_exception();
                more = false;
            }
            r->endPosition = reader.position();
            if (!r->records.empty()) {
                inFlight.push_back(std::move(r));
                pool.submit(inFlight.back().get());
            }
            drain(maxInFlight - 1);
        }
        drain(0);
    } catch (...) {
        merge.finish();
        throw;
    }
    merge.finish();
    if (readError)
        std::rethrow_exception(readError);
    return !cancelled;
}

} // namespace TavIec61850Parser
