#include "platform/parser/PcapParser.h"

#include "platform/parser/ContainerReader.h"
#include "platform/parser/CookedLinkLayer.h"
#include "platform/parser/FileRegistry.h"
#include "platform/parser/InflatedCapture.h"
#include "platform/parser/MappedFile.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/ProgressReporter.h"
#include "platform/parser/StreamIndex.h"

namespace TavIec61850Parser {

namespace {

// How many frames go by between looks at the cancel flag and the progress: a
// few hundred microseconds of work, well inside the 50 ms a cancel may take.
constexpr std::uint64_t kPollEvery = 1024;

template <class Decode> bool decodes(FileStats& stats, Decode decode) {
    try {
        decode();
        return true;
    } catch (const MalformedFrame&) {
    } catch (const OutOfBounds&) {
    }
    ++stats.malformedFrames;
    return false;
}

// Decodes an Ethernet frame, or one rewritten as such with its destination
// unknown, and files it under its stream.
void decodeEthernetFrame(const std::uint8_t* data, std::size_t size, bool dstKnown,
                         const Package& package, StreamIndex& index, FileStats& stats) {
    EthernetFrame eth;
    if (!decodeEthernet(data, size, eth)) {
        ++stats.otherFrames;
        return;
    }
    eth.dstKnown = dstKnown;
    if (eth.etherType == kEtherTypeSv) {
        SvFrameView sv;
        if (decodes(stats, [&] { sv = decodeSvApdu(eth.payload, eth.payloadSize); })) {
            ++stats.svFrames;
            index.addSv(eth, sv, package, data, size);
        }
    } else if (eth.etherType == kEtherTypeGoose) {
        GooseFrameView goose;
        if (decodes(stats, [&] { goose = decodeGooseApdu(eth.payload, eth.payloadSize); })) {
            ++stats.gooseFrames;
            index.addGoose(eth, goose, package);
        }
    } else {
        ++stats.otherFrames;
    }
}

// Cooked frames are rewritten as Ethernet ones and always decoded in full.
void handleCookedFrame(const FrameRecord& rec, const Package& package, StreamIndex& index,
                       FileStats& stats, std::vector<std::uint8_t>& cooked) {
    if (isCookedLinkType(rec.linkType) &&
        cookedToEthernet(rec.linkType, rec.data, rec.size, cooked))
        decodeEthernetFrame(cooked.data(), cooked.size(), false, package, index, stats);
    else
        ++stats.otherFrames;
}

void handleFrame(const FrameRecord& rec, StreamIndex& index, FileStats& stats,
                 std::vector<std::uint8_t>& cooked) {
    const Package package{rec.time, rec.offset};
    if (rec.linkType != kLinkTypeEthernet) [[unlikely]] {
        handleCookedFrame(rec, package, index, stats, cooked);
        return;
    }
    if (index.addKnownSv(rec.data, rec.size, package)) {
        ++stats.svFrames;
        return;
    }
    decodeEthernetFrame(rec.data, rec.size, true, package, index, stats);
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
                           FileStats& stats, unsigned /*workers*/) {
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

    StreamIndex index(db, filter, path);
    ProgressReporter reporter(std::move(progress), frames.size());
    // Whatever stays in the database must be readable again by offset.
    const auto finish = [&] {
        index.finish();
        FileRegistry::rememberLinks(path, reader->linkLayout());
    };
    FrameRecord rec;
    std::vector<std::uint8_t> cooked;
    try {
        while (reader->next(rec)) {
            ++stats.frames;
            handleFrame(rec, index, stats, cooked);
            if (stats.frames % kPollEvery == 0) {
                if (cancel.load(std::memory_order_relaxed)) {
                    finish();
                    return;
                }
                reporter.at(reader->position());
            }
        }
    } catch (...) {
        finish();
        throw;
    }
    finish();
    reporter.done();
}

void PcapParser::forgetFile(const std::string& path) {
    forgetInflated(path);
}

} // namespace TavIec61850Parser
