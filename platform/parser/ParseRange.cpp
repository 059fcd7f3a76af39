#include "platform/parser/ParseRange.h"

namespace TavIec61850Parser {

void addCounts(FileStats& to, const FileStats& from) {
    to.frames += from.frames;
    to.svFrames += from.svFrames;
    to.gooseFrames += from.gooseFrames;
    to.malformedFrames += from.malformedFrames;
    to.otherFrames += from.otherFrames;
}

RangeWorkers::RangeWorkers(unsigned threads, Decode decode) : decode_(std::move(decode)) {
    for (unsigned i = 0; i < threads; ++i)
        threads_.emplace_back([this] { work(); });
}

RangeWorkers::~RangeWorkers() {
    {
        std::lock_guard lock(mutex_);
        stop_ = true;
    }
    wake_.notify_all();
    for (std::thread& t : threads_)
        t.join();
}

void RangeWorkers::submit(ParseRange* r) {
    {
        std::lock_guard lock(mutex_);
        waiting_.push_back(r);
    }
    wake_.notify_one();
}

void RangeWorkers::waitDecoded(const ParseRange& r) {
    std::unique_lock lock(mutex_);
    decodedOne_.wait(lock, [&] { return r.decoded; });
}

bool RangeWorkers::isDecoded(const ParseRange& r) {
    std::lock_guard lock(mutex_);
    return r.decoded;
}

bool RangeWorkers::decodeOneHere() {
    ParseRange* r = take();
    if (!r)
        return false;
    decodeAndMark(*r);
    return true;
}

ParseRange* RangeWorkers::take() {
    std::lock_guard lock(mutex_);
    if (waiting_.empty())
        return nullptr;
    ParseRange* r = waiting_.front();
    waiting_.pop_front();
    return r;
}

void RangeWorkers::decodeAndMark(ParseRange& r) {
    try {
        decode_(r);
    } catch (...) {
        r.error = std::current_exception();
    }
    {
        std::lock_guard lock(mutex_);
        r.decoded = true;
    }
    decodedOne_.notify_all();
}

void RangeWorkers::work() {
    for (;;) {
        ParseRange* r = nullptr;
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

} // namespace TavIec61850Parser
