#include "platform/parser/ParallelParse.h"

#include "platform/parser/FrameFiling.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/ParseRange.h"
#include "platform/parser/PcapReader.h"
#include "platform/parser/RangeMerge.h"

#include <algorithm>
#include <memory>

namespace TavIec61850Parser {

namespace {

// A range is a millisecond or two of work: enough to make the hand-over
// cheap, little enough that a cancel waits for almost nothing.
constexpr std::size_t kRangeFrames = 16384;
constexpr std::size_t kRangeBytes = 4 * 1024 * 1024;
constexpr std::uint64_t kPollEvery = 1024;
constexpr std::uint64_t kNoStart = ~std::uint64_t{0};

// Runs the ranges of one parse: hands them out, and merges them in file order.
class Pipeline {
public:
    Pipeline(const ParallelParse& p, ContainerReader& reader)
        : p_(p), reader_(reader), pcap_(dynamic_cast<PcapReader*>(&reader)), merge_(p.db, p.path),
          expected_(reader.position()), pool_(p.workers - 1, [this](ParseRange& r) { decode(r); }) {
    }

    // False when cancelled.
    bool run() {
        try {
            if (pcap_)
                cutBytes();
            else
                cutRecords();
            drain(0);
        } catch (...) {
            merge_.finish();
            throw;
        }
        merge_.finish();
        if (broken_)
            std::rethrow_exception(broken_);
        return !cancelled_;
    }

private:
    void decode(ParseRange& r) { pcap_ ? walk(r) : decodeRecords(r); }

    void decodeRecords(ParseRange& r) {
        thread_local std::vector<std::uint8_t> cooked;
        StreamIndex index(r.db, p_.filter, p_.path);
        for (const FrameRecord& rec : r.records)
            fileFrame(rec, index, r.stats, cooked);
        r.stats.frames = r.records.size();
        r.touched = index.touched();
    }

    // Walks and decodes the records that start in the range's bytes.
    void walk(ParseRange& r) {
        thread_local std::vector<std::uint8_t> cooked;
        if (!r.startKnown) {
            const auto start = findPcapRecord(p_.data, p_.size, pcap_->header(), r.start);
            r.start = start ? *start : kNoStart;
            if (!start)
                return;
        }
        PcapReader reader(p_.path, p_.data, p_.size, pcap_->header());
        reader.seek(r.start);
        StreamIndex index(r.db, p_.filter, p_.path);
        FrameRecord rec;
        try {
            while (reader.position() < r.end && reader.next(rec)) {
                fileFrame(rec, index, r.stats, cooked);
                if (++r.stats.frames % kPollEvery == 0 && p_.cancel.load(std::memory_order_relaxed))
                    break;
            }
        } catch (const ParseError&) {
            r.broken = std::current_exception();
        }
        r.landing = reader.position();
        r.touched = index.touched();
    }

    // The calling thread walks the record headers and hands out the records.
    void cutRecords() {
        bool more = true;
        std::uint64_t walked = 0;
        FrameRecord rec;
        while (more && !cancelled_) {
            auto r = std::make_unique<ParseRange>();
            r->records.reserve(kRangeFrames);
            std::size_t bytes = 0;
            try {
                while (r->records.size() < kRangeFrames && bytes < kRangeBytes &&
                       (more = reader_.next(rec))) {
                    r->records.push_back(rec);
                    bytes += rec.size;
                    if (++walked % kPollEvery == 0 && p_.cancel.load(std::memory_order_relaxed)) {
                        cancelled_ = true;
                        break;
                    }
                }
            } catch (const ParseError&) {
                // What was read before the break stays, as in a parse on one thread.
                r->broken = std::current_exception();
                more = false;
            }
            r->landing = reader_.position();
            hand(std::move(r));
        }
    }

    // A pcap file's records are found by each worker in its own bytes.
    void cutBytes() {
        for (std::uint64_t at = expected_; at < p_.size && !cancelled_;) {
            auto r = std::make_unique<ParseRange>();
            r->start = at;
            r->startKnown = at == expected_;
            r->end = std::min<std::uint64_t>(p_.size, at + kRangeBytes);
            at = r->end;
            hand(std::move(r));
            if (p_.cancel.load(std::memory_order_relaxed))
                cancelled_ = true;
        }
    }

    void hand(std::unique_ptr<ParseRange> r) {
        inFlight_.push_back(std::move(r));
        pool_.submit(inFlight_.back().get());
        drain(2 * static_cast<std::size_t>(p_.workers));
    }

    // Merges the decoded ranges at the front, waiting until at most `keep`
    // remain undecoded behind them. A cancel leaves the rest unmerged: what
    // was merged is a prefix of the file, as a cancel on one thread leaves.
    void drain(std::size_t keep) {
        while (!inFlight_.empty() && !cancelled_ && !broken_) {
            if (!pool_.isDecoded(*inFlight_.front())) {
                if (inFlight_.size() <= keep)
                    return;
                if (pool_.decodeOneHere())
                    continue;
                pool_.waitDecoded(*inFlight_.front());
            }
            if (p_.cancel.load(std::memory_order_relaxed))
                cancelled_ = true;
            else
                mergeFront();
        }
    }

    // A worker's guess of where its first record starts is checked against
    // where the range before really ended; a wrong guess is walked again.
    bool startsWhereExpected(ParseRange& r) {
        if (!pcap_ || r.start == expected_)
            return true;
        if (expected_ >= r.end)
            return false; // a record of the range before covers all of it
        ParseRange again;
        again.start = expected_;
        again.startKnown = true;
        again.end = r.end;
        walk(again);
        again.decoded = true;
        r.db = std::move(again.db);
        r.touched = std::move(again.touched);
        r.stats = again.stats;
        r.broken = again.broken;
        r.landing = again.landing;
        r.start = again.start;
        return true;
    }

    void mergeFront() {
        ParseRange& r = *inFlight_.front();
        if (r.error)
            std::rethrow_exception(r.error);
        if (startsWhereExpected(r)) {
            merge_.add(r.db, r.touched);
            addCounts(p_.stats, r.stats);
            expected_ = r.landing;
            p_.progress.at(r.landing);
            broken_ = r.broken;
        }
        inFlight_.pop_front();
    }

    const ParallelParse& p_;
    ContainerReader& reader_;
    PcapReader* pcap_;
    RangeMerge merge_;
    std::uint64_t expected_; // where the next range's first record must start
    bool cancelled_ = false;
    std::exception_ptr broken_;
    std::deque<std::unique_ptr<ParseRange>> inFlight_; // in file order; outlives the workers
    RangeWorkers pool_;
};

} // namespace

bool ParallelParse::run(ContainerReader& reader) {
    return Pipeline(*this, reader).run();
}

} // namespace TavIec61850Parser
