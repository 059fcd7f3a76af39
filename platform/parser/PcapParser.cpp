#include "platform/parser/PcapParser.h"

#include "platform/parser/ContainerReader.h"
#include "platform/parser/FileRegistry.h"
#include "platform/parser/FrameFiling.h"
#include "platform/parser/InflatedCapture.h"
#include "platform/parser/MappedFile.h"
#include "platform/parser/ParallelParse.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/ProgressReporter.h"
#include "platform/parser/StreamIndex.h"

#include <string_view>
#include <thread>

namespace TavIec61850Parser {

namespace {

// How many frames go by between looks at the cancel flag and the progress: a
// few hundred microseconds of work, well inside the 50 ms a cancel may take.
constexpr std::uint64_t kPollEvery = 1024;

// False when cancelled.
bool parseOnOneThread(ContainerReader& reader, const std::string& path, Db& db,
                      const Filter& filter, const std::atomic<bool>& cancel,
                      ProgressReporter& reporter, FileStats& stats) {
    StreamIndex index(db, filter, path);
    FrameRecord rec;
    std::vector<std::uint8_t> cooked;
    try {
        while (reader.next(rec)) {
            ++stats.frames;
            fileFrame(rec, index, stats, cooked);
            if (stats.frames % kPollEvery == 0) {
                if (cancel.load(std::memory_order_relaxed)) {
                    index.finish();
                    return false;
                }
                reporter.at(reader.position());
            }
        }
    } catch (...) {
        index.finish();
        throw;
    }
    index.finish();
    return true;
}

} // namespace

void PcapParser::parseFile(const std::string& path, Db& db, const Filter& filter,
                           const std::atomic<bool>& cancel, std::function<void(double)> progress) {
    FileStats stats;
    parseFile(path, db, filter, cancel, std::move(progress), stats);
}

void PcapParser::parseFile(const std::string& path, Db& db, const Filter& filter,
                           const std::atomic<bool>& cancel, std::function<void(double)> progress,
                           FileStats& stats) {
    parseFile(path, db, filter, cancel, std::move(progress), stats, 0);
}

void PcapParser::parseFile(const std::string& path, Db& db, const Filter& filter,
                           const std::atomic<bool>& cancel, std::function<void(double)> progress,
                           FileStats& stats, unsigned workers) {
    if (workers == 0)
        workers = std::max(1u, std::thread::hardware_concurrency());
    stats = FileStats{};
    MappedFile file(path);
    // A compressed file is inflated in the first half of the progress, and
    // its frames are read from the inflated copy in the second.
    std::unique_ptr<MappedFile> inflated;
    if (isCompressed(file)) {
        stats.compressed = true;
        inflated = mapInflated(path, file, cancel, [&](double f) {
            if (progress)
                progress(f / 2);
        });
        if (!inflated)
            return;
        if (progress)
            progress = [whole = std::move(progress)](double f) { whole(0.5 + f / 2); };
    }
    const MappedFile& frames = inflated ? *inflated : file;
    std::unique_ptr<ContainerReader> reader = openContainer(path, frames.data(), frames.size());
    stats.format = reader->format();
    FileRegistry::remember(path, file.version());
    // Reading a path again replaces what it gave before instead of doubling it.
    db.clearByFileName(path);

    ProgressReporter reporter(std::move(progress), frames.size());
    // In a pcapng file the calling thread walks every header and hands the
    // records out, which costs about what decoding them does: on two cores a
    // second worker gained nothing with the core free and lost a third with
    // it busy, so only more cores than that share a pcapng parse.
    if (std::string_view(reader->format()) == "pcapng" && workers < 3)
        workers = 1;
    bool whole = false;
    // Whatever stays in the database must be readable again by offset.
    try {
        whole = workers > 1 ? ParallelParse{path,  db,      filter,        cancel,       reporter,
                                            stats, workers, frames.data(), frames.size()}
                                  .run(*reader)
                            : parseOnOneThread(*reader, path, db, filter, cancel, reporter, stats);
    } catch (...) {
        FileRegistry::rememberLinks(path, reader->linkLayout());
        throw;
    }
    FileRegistry::rememberLinks(path, reader->linkLayout());
    if (whole)
        reporter.done();
}

void PcapParser::forgetFile(const std::string& path) {
    forgetInflated(path);
}

} // namespace TavIec61850Parser
