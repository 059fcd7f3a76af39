// A capture parsed on one thread and on several gives the same database: the
// same streams in the same order, the same packages at the same offsets, the
// same time bounds and order flags, the same counts; and a stream the fast
// path knows is filed correctly whatever bytes its neighbours share with it.
#include "tests/platform/parser/CaptureBytes.h"

#include "platform/parser/ParseError.h"
#include "platform/parser/PcapParser.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

using namespace TavIec61850Parser;
using namespace TavTest;

namespace {

void describeFiles(std::ostream& out, const PackageFiles& files) {
    for (const PackageFile& f : files) {
        out << " file " << f.path << " ordered " << f.timeOrdered << " from " << f.earliest.seconds
            << "." << f.earliest.nanoseconds << " to " << f.latest.seconds << "."
            << f.latest.nanoseconds << " packages " << f.packages.size() << ":";
        for (const Package& p : f.packages)
            out << " " << p.time.seconds << "." << p.time.nanoseconds << "@" << p.offset;
        out << "\n";
    }
}

template <class T> std::string optional(const std::optional<T>& v) {
    return v ? std::to_string(*v) : "-";
}

void describeEthernet(std::ostream& out, const EthernetPart& e, const std::string& dst) {
    out << e.srcMac << ">" << dst;
    if (e.vlan)
        out << " vlan " << optional(e.vlan->id) << "/" << optional(e.vlan->innerId) << "/"
            << int(e.vlan->priority);
    if (e.hsr)
        out << " hsr " << optional(e.hsr->line) << e.hsr->sequence;
    if (e.prp)
        out << " prp " << optional(e.prp->line) << e.prp->sequence;
}

// Everything the database holds, in its own iteration order.
std::string describe(const Db& db) {
    std::ostringstream out;
    for (const Sv& s : db.svProto.svs) {
        out << "SV ";
        describeEthernet(out, s, s.dstMac);
        out << " " << s.appId << " " << s.simulation << " " << s.svId << " " << s.confRev << " "
            << s.datSet << " " << s.valuesPerAsdu << " " << s.seqDataBytes << " " << s.asdusPerFrame
            << " svIDs";
        for (const std::string& id : s.asduSvIds)
            out << " " << id;
        out << "\n";
        describeFiles(out, s.files);
    }
    for (const Goose& g : db.gooseProto.gooses) {
        out << "GOOSE ";
        describeEthernet(out, g, g.dstMac);
        out << " " << g.appId << " " << g.simulation << " " << g.gocbRef << " " << g.goId << " "
            << g.datSet << " " << g.confRev << " " << g.entries << " " << g.numDatSetEntries
            << "\n";
        describeFiles(out, g.files);
    }
    return out.str();
}

std::string describe(const FileStats& s) {
    std::ostringstream out;
    out << s.format << " frames " << s.frames << " sv " << s.svFrames << " goose " << s.gooseFrames
        << " malformed " << s.malformedFrames << " other " << s.otherFrames << " compressed "
        << s.compressed;
    return out.str();
}

struct Parsed {
    std::string db;
    std::string stats;
    std::string error; // what a file that breaks off throws
    std::vector<double> progress;
};

Parsed parseWith(const std::string& path, unsigned workers) {
    Db db;
    FileStats stats;
    std::atomic<bool> cancel{false};
    Parsed p;
    try {
        PcapParser::parseFile(
            path, db, {}, cancel, [&](double f) { p.progress.push_back(f); }, stats, workers);
    } catch (const ParseError& e) {
        p.error = e.what();
        p.progress.push_back(1.0);
    }
    p.db = describe(db);
    p.stats = describe(stats);
    return p;
}

// Two sections, their interfaces numbered afresh and in another order, SV
// on both and enough frames for many ranges, time running back now and then.
std::string severalSections() {
    Pcapng file;
    const Bytes a = svFrame("SectionA", 1, 4);
    const Bytes b = svFrame("SectionB", 2, 3);
    std::uint64_t ticks = 1'700'000'000'000'000ull;
    for (int section = 0; section < 2; ++section) {
        file.section().interface(1, 6).interface(1, 9);
        // Blocks are built a thousand at a time: the builder copies what it has.
        for (int thousand = 0; thousand < 20; ++thousand) {
            Pcapng part;
            for (int i = 0; i < 1000; ++i) {
                ticks += (i == 999) ? -5000 : 250;
                part.enhanced(section, section ? ticks * 1000 : ticks, (i % 3) ? a : b);
            }
            file.out.insert(file.out.end(), part.out.begin(), part.out.end());
        }
    }
    return writeTemp("sections.pcapng", file.out);
}

// Appends records to a pcap file a few at a time: the builder copies what it has.
void appendRecords(Bytes& file, const std::vector<PcapRecord>& records) {
    const Bytes part = pcapFile(records, false, false);
    file.insert(file.end(), part.begin() + 24, part.end());
}

// Frames of 200 kB of zeros between SV frames: inside one, every offset looks
// like the start of a run of empty records, so a worker that starts in one
// guesses wrong and its range is walked again from where the one before ended.
std::string zeroFrames() {
    Bytes file = pcapFile({}, false, false);
    const Bytes sv = svFrame("BetweenZeros", 1, 8);
    std::uint32_t micros = 0;
    for (int block = 0; block < 60; ++block) {
        std::vector<PcapRecord> records;
        for (int i = 0; i < 300; ++i)
            records.push_back({1'700'000'000u + micros / 1'000'000, micros % 1'000'000, sv});
        micros += 250;
        records.push_back({1'700'000'000u, 0, Bytes(200'000, 0)});
        appendRecords(file, records);
    }
    return writeTemp("zeros.pcap", file);
}

// A generated capture cut short in the middle of a record, past several ranges.
std::string cutShort() {
    const std::string whole = generated("whole", {"--sv", "8", "--duration", "2"});
    Bytes bytes;
    const std::string text = readFile(whole);
    bytes.assign(text.begin(), text.begin() + 9'000'003);
    return writeTemp("cut.pcap", bytes);
}

struct CaptureCase {
    const char* name;
    std::vector<std::string> options; // empty: `build` writes it
    std::string (*build)() = nullptr;
};

std::string pathOf(const CaptureCase& c) {
    if (c.build)
        return c.build();
    std::vector<std::string> args{tempDir() + "/" + c.name};
    args.insert(args.end(), c.options.begin(), c.options.end());
    runGenerator(args);
    return args.front();
}

} // namespace

class WorkerCount : public ::testing::TestWithParam<CaptureCase> {
protected:
    static void SetUpTestSuite() { ::setenv("XDG_CACHE_HOME", (tempDir() + "/cache").c_str(), 1); }
};

TEST_P(WorkerCount, severalWorkersGiveWhatOneGives) {
    const std::string path = pathOf(GetParam());
    const Parsed one = parseWith(path, 1);
    ASSERT_FALSE(one.db.empty());
    EXPECT_EQ(one.error.empty(), std::string(GetParam().name) != "cut.pcap") << one.error;
    for (unsigned workers : {2u, 3u, 8u}) {
        const Parsed many = parseWith(path, workers);
        EXPECT_EQ(many.stats, one.stats) << workers << " workers";
        EXPECT_EQ(many.error, one.error) << workers << " workers";
        EXPECT_TRUE(many.db == one.db) << workers << " workers: the databases differ";
        ASSERT_FALSE(many.progress.empty());
        EXPECT_TRUE(std::is_sorted(many.progress.begin(), many.progress.end()));
        EXPECT_EQ(many.progress.back(), 1.0);
    }
    PcapParser::forgetFile(path);
}

INSTANTIATE_TEST_SUITE_P(
    Captures, WorkerCount,
    ::testing::Values(
        CaptureCase{"pcap.pcap", {"--sv", "3", "--goose", "4", "--duration", "3"}},
        CaptureCase{"pcapng.pcapng",
                    {"--format", "pcapng-ns", "--big-endian", "--sv", "2", "--duration", "3"}},
        CaptureCase{"sections.pcapng", {}, severalSections},
        CaptureCase{"zeros.pcap", {}, zeroFrames}, CaptureCase{"cut.pcap", {}, cutShort},
        CaptureCase{"backwards.pcap",
                    {"--sv", "2", "--duration", "3", "--sv-fault", "reorder@0.5x40"}},
        CaptureCase{"one-publisher.pcap",
                    {"--sv", "8", "--shared-publisher", "--vlan", "5", "--duration", "1"}},
        CaptureCase{
            "asdus-goose.pcap",
            {"--sv", "4", "--asdus", "2", "--goose", "50", "--change", "0.5", "--duration", "3"}},
        CaptureCase{"svids.pcap",
                    {"--sv", "2", "--asdus", "3", "--distinct-svids", "--duration", "3"}},
        CaptureCase{"cooked.pcap", {"--sv", "2", "--link", "sll2", "--duration", "3"}},
        CaptureCase{"compressed.pcap.gz", {"--sv", "2", "--gzip", "--duration", "3"}}),
    [](const auto& info) {
        std::string name = info.param.name;
        for (char& c : name)
            if (!std::isalnum(static_cast<unsigned char>(c)))
                c = '_';
        return name;
    });

// Eight streams of one publisher: the same addresses, APPID and VLAN, told
// apart by their svID only. Whatever VLAN they share, every frame lands in
// its own stream.
TEST(OnePublisher, everyStreamGetsItsOwnFramesWhateverTheyShare) {
    for (const char* vlan : {"0", "5", "100"}) {
        const std::string path =
            generated(std::string("shared-vlan") + vlan,
                      {"--sv", "8", "--shared-publisher", "--vlan", vlan, "--duration", "0.5"});
        Db db;
        const FileStats stats = parse(path, db);
        EXPECT_EQ(stats.svFrames, 16000u);
        ASSERT_EQ(db.svProto.svs.size(), 8u) << "VLAN " << vlan;
        for (const Sv& s : db.svProto.svs) {
            EXPECT_EQ(s.srcMac, "02:00:00:00:01:00");
            const PackageFile& f = *s.files.begin();
            ASSERT_EQ(f.packages.size(), 2000u) << s.svId;
            for (std::size_t i = 1; i < f.packages.size(); ++i)
                ASSERT_EQ(f.packages[i].offset - f.packages[i - 1].offset,
                          f.packages[1].offset - f.packages[0].offset)
                    << s.svId << ": a frame of another stream filed here";
        }
    }
}

// A stream whose frames change shape every frame (one ASDU, then two, then
// three), beside a stream of the same shapes whose svID differs by one
// letter: each frame is filed under its own stream whatever layouts the
// parser remembers, on one worker and on several.
TEST(ChangingLayouts, everyFrameFiledUnderItsStream) {
    Bytes file = pcapFile({}, false, false);
    for (std::uint32_t hundred = 0; hundred < 30; ++hundred) {
        std::vector<PcapRecord> records;
        for (std::uint32_t i = hundred * 100; i < hundred * 100 + 100; ++i) {
            const int asdus = 1 + static_cast<int>(i % 3);
            const auto count = static_cast<std::uint16_t>(i);
            records.push_back({1'700'000'000u, i * 2, svFrame("ShapeA", asdus, 8, count)});
            records.push_back({1'700'000'000u, i * 2 + 1, svFrame("ShapeB", asdus, 8, count)});
        }
        appendRecords(file, records);
    }
    const std::string path = writeTemp("shapes.pcap", file);
    for (unsigned workers : {1u, 2u}) {
        Db db;
        FileStats stats;
        std::atomic<bool> cancel{false};
        PcapParser::parseFile(path, db, {}, cancel, nullptr, stats, workers);
        EXPECT_EQ(stats.svFrames, 6000u);
        ASSERT_EQ(db.svProto.svs.size(), 2u);
        for (const Sv& s : db.svProto.svs) {
            const PackageFile& f = *s.files.begin();
            ASSERT_EQ(f.packages.size(), 3000u) << s.svId;
            const std::uint32_t parity = s.svId == "ShapeA" ? 0 : 1;
            for (std::size_t i = 0; i < f.packages.size(); ++i)
                ASSERT_EQ(f.packages[i].time.nanoseconds, (i * 2 + parity) * 1000)
                    << s.svId << " frame " << i;
        }
    }
}
