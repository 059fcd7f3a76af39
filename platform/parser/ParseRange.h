#pragma once

#include "platform/parser/ContainerReader.h"
#include "platform/parser/PcapParser.h"
#include "platform/parser/StreamIndex.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace TavIec61850Parser {

// One stretch of a capture, decoded on its own into a database of its own.
struct ParseRange {
    // Either the records the calling thread found...
    std::vector<FrameRecord> records;
    // ...or the bytes whose records the worker walks itself: those starting in
    // [start, end). `start` is a guess until the range before has been walked.
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    bool startKnown = false;
    std::uint64_t landing = 0; // the reader's position after the last record

    Db db;
    std::vector<StreamIndex::Touched> touched;
    FileStats stats;           // frames included
    std::exception_ptr error;  // the decoding failed: nothing of the range is kept
    std::exception_ptr broken; // the file breaks off here: the records before are kept
    bool decoded = false;
};

// Ranges waiting for a worker, and the workers. The calling thread is one of
// the workers too: when it is ahead it decodes a range instead of waiting.
// Destroying it stops and joins the threads, so the ranges must outlive it.
class RangeWorkers {
public:
    using Decode = std::function<void(ParseRange&)>;
    RangeWorkers(unsigned threads, Decode decode);
    ~RangeWorkers();

    void submit(ParseRange* r);
    void waitDecoded(const ParseRange& r);
    bool isDecoded(const ParseRange& r);
    // Decodes a waiting range on the calling thread; false when none waits.
    bool decodeOneHere();

private:
    ParseRange* take();
    void decodeAndMark(ParseRange& r);
    void work();

    Decode decode_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable decodedOne_;
    std::deque<ParseRange*> waiting_;
    bool stop_ = false;
    std::vector<std::thread> threads_;
};

void addCounts(FileStats& to, const FileStats& from);

} // namespace TavIec61850Parser
