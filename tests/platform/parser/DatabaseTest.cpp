#include "platform/parser/FrameReader.h"
#include "tests/platform/parser/CaptureBytes.h"

#include "platform/parser/GooseParser.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/SvParser.h"

#include "tests/support/TestCaptures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace TavIec61850Parser;
using namespace TavTest;
using ::testing::HasSubstr;

namespace {

Bytes relayFrame() {
    return firstFrameOf("goose_ge-f650_8frames.pcap");
}

std::string gooseAtSeconds(const std::string& name, const std::vector<std::uint32_t>& seconds) {
    std::vector<PcapRecord> records;
    for (std::uint32_t s : seconds)
        records.push_back({s, 0, relayFrame()});
    return writeTemp(name, pcapFile(records, false, false));
}

std::vector<std::uint32_t> secondsOf(const std::vector<const Package*>& packages) {
    std::vector<std::uint32_t> out;
    for (const Package* p : packages)
        out.push_back(p->time.seconds);
    return out;
}

template <class Result> Result onlyEntry(const std::map<const PackageFile*, Result>& m) {
    EXPECT_EQ(m.size(), 1u);
    return m.begin()->second;
}

std::string errorOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const ParseError& e) {
        return e.what();
    }
    return "no error";
}

} // namespace

TEST(Window, orderedTimesUseTheSortedOrder) {
    Db db;
    parse(gooseAtSeconds("ordered.pcap", {1, 2, 2, 3, 4, 5}), db);
    const Goose& g = *db.gooseProto.gooses.begin();
    const PackageFile& f = *g.files.begin();
    ASSERT_TRUE(f.timeOrdered);

    const FilteredPackagesResult mid = onlyEntry(g.getfilteredPackages({2, 0}, {3, 0}));
    EXPECT_EQ(secondsOf(mid.packages), (std::vector<std::uint32_t>{2, 2, 3}));
    EXPECT_EQ(mid.firstIndex, 1u);
    EXPECT_EQ(mid.lastBefore, &f.packages[0]);

    const FilteredPackagesResult before = onlyEntry(g.getfilteredPackages({0, 0}, {0, 5}));
    EXPECT_TRUE(before.packages.empty());
    EXPECT_EQ(before.lastBefore, nullptr);

    const FilteredPackagesResult after = onlyEntry(g.getfilteredPackages({9, 0}, {10, 0}));
    EXPECT_TRUE(after.packages.empty());
    EXPECT_EQ(after.firstIndex, 6u);
    EXPECT_EQ(after.lastBefore, &f.packages[5]);
}

TEST(Window, backwardTimesAreScannedInCaptureOrder) {
    Db db;
    parse(gooseAtSeconds("backwards.pcap", {5, 1, 3, 2, 4, 1}), db);
    const Goose& g = *db.gooseProto.gooses.begin();
    const PackageFile& f = *g.files.begin();
    ASSERT_FALSE(f.timeOrdered);
    EXPECT_EQ(f.getBeginTime(), (Timest{1, 0}));
    EXPECT_EQ(f.getEndTime(), (Timest{5, 0}));

    const FilteredPackagesResult w = onlyEntry(g.getfilteredPackages({2, 0}, {3, 0}));
    EXPECT_EQ(secondsOf(w.packages), (std::vector<std::uint32_t>{3, 2}));
    EXPECT_EQ(w.firstIndex, 2u);
    // Of the two packages at 1 s, the one captured later is in force.
    EXPECT_EQ(w.lastBefore, &f.packages[5]);

    Db svDb;
    std::vector<PcapRecord> records;
    for (std::uint32_t s : {3u, 1u, 2u})
        records.push_back({s, 0, svFrame("A", 1, 1)});
    parse(writeTemp("svback.pcap", pcapFile(records, false, false)), svDb);
    const Sv& sv = *svDb.svProto.svs.begin();
    EXPECT_EQ(secondsOf(onlyEntry(sv.getfilteredPackages({1, 0}, {2, 0}))),
              (std::vector<std::uint32_t>{1, 2}));
}

TEST(Database, clearByFileNameWithTwoFiles) {
    Bytes goose = relayFrame();
    std::string a =
        writeTemp("a.pcap", pcapFile({{1, 0, svFrame("X", 1, 8)}, {1, 1, goose}}, false, false));
    std::string b = writeTemp(
        "b.pcap", pcapFile({{2, 0, svFrame("X", 1, 8)}, {2, 1, svFrame("Y", 1, 8)}}, false, false));
    Db db;
    parse(a, db);
    parse(b, db);
    parse(b, db); // again: replaces, does not double
    ASSERT_EQ(db.svProto.getSvCount(), 2u);
    ASSERT_EQ(db.gooseProto.getGooseCount(), 1u);
    for (const Sv& s : db.svProto.svs) {
        EXPECT_EQ(s.files.size(), s.svId == "X" ? 2u : 1u);
        EXPECT_EQ(s.packageCount(), s.svId == "X" ? 2u : 1u);
        // Each file keeps its own time range.
        for (const PackageFile& f : s.files)
            EXPECT_EQ(f.getBeginTime().seconds, f.path == a ? 1u : 2u);
    }

    db.clearByFileName(a);
    EXPECT_EQ(db.gooseProto.getGooseCount(), 0u);
    ASSERT_EQ(db.svProto.getSvCount(), 2u);
    for (const Sv& s : db.svProto.svs) {
        ASSERT_EQ(s.files.size(), 1u);
        EXPECT_EQ(s.files.begin()->path, b);
    }
    db.clearByFileName(b);
    EXPECT_EQ(db.svProto.getSvCount(), 0u);
}

TEST(Database, filterKeepsOnlyWhatItNames) {
    std::string path = sharedCapture("sv_gen_8streams_4000loops_novlan.pcap");
    std::atomic<bool> cancel{false};
    FileStats stats;
    Db none;
    Filter noSv;
    noSv.keep.sv = false;
    PcapParser::parseFile(path, none, noSv, cancel, nullptr, stats);
    EXPECT_EQ(stats.svFrames, 32000u);
    EXPECT_EQ(none.svProto.getSvCount(), 0u);

    Db one;
    Filter listed;
    listed.svIdentifiers.push_back(
        {"c4:b5:12:00:00:01", "01:0c:cd:01:00:01", std::nullopt, 0x4000, "svID0003", 1});
    PcapParser::parseFile(path, one, listed, cancel, nullptr);
    ASSERT_EQ(one.svProto.getSvCount(), 1u);
    EXPECT_EQ(one.svProto.svs.begin()->svId, "svID0003");
    EXPECT_EQ(one.svProto.svs.begin()->packageCount(), 4000u);
}

TEST(Reread, changedGoneAndWrongOffsets) {
    std::string path = tempDir() + "/copy.pcap";
    std::filesystem::copy_file(sharedCapture("goose_ge-f650_8frames.pcap"), path,
                               std::filesystem::copy_options::overwrite_existing);
    Db db;
    parse(path, db);
    const PackageFile& f = *db.gooseProto.gooses.begin()->files.begin();
    const std::uint64_t second = f.packages[1].offset;
    EXPECT_EQ(GooseParser::parseGoosePDUFromFile(path, second).sqNum, "11");

    EXPECT_THAT(errorOf([&] { GooseParser::parseGoosePDUFromFile(path, second + 4); }),
                HasSubstr("no frame record at byte"));
    EXPECT_THAT(errorOf([&] { GooseParser::parseGoosePDUFromFile(path, 1 << 20); }),
                HasSubstr("no frame record"));
    EXPECT_THAT(errorOf([&] { SvParser::parseASDUFromFile(path, second); }),
                HasSubstr("no SV frame"));

    std::ofstream(path, std::ios::app) << "more";
    EXPECT_EQ(errorOf([&] { GooseParser::parseGoosePDUFromFile(path, second); }),
              path + ": the file has changed since it was parsed");
    std::filesystem::remove(path);
    EXPECT_EQ(errorOf([&] { GooseParser::parseGoosePDUFromFile(path, second); }),
              path + ": the file is gone");
}

// Another program cuts the file short while its frames are being read: the
// read fails as a changed file, and the process lives on.
TEST(Reread, aFileCutShortInTheMiddleOfABatchIsToldAsChanged) {
    std::string path = tempDir() + "/cut.pcap";
    std::filesystem::copy_file(sharedCapture("sv_gen_8streams_4000loops_novlan.pcap"), path,
                               std::filesystem::copy_options::overwrite_existing);
    Db db;
    parse(path, db);
    std::vector<std::uint64_t> offsets;
    for (const auto& p : db.svProto.svs.begin()->files.begin()->packages)
        offsets.push_back(p.offset);
    std::size_t read = 0;
    EXPECT_EQ(errorOf([&] {
                  FrameReader::readEach(path, offsets, [&](std::size_t, auto&) {
                      if (read++ == 0)
                          std::filesystem::resize_file(path, 0);
                  });
              }),
              path + ": the file has changed since it was parsed");
    EXPECT_EQ(read, 1u);
}

TEST(Reread, pcapngBlocksOfBothByteOrders) {
    Bytes goose = relayFrame();
    Pcapng little;
    little.section().interface(1).enhanced(0, 5, goose);
    Pcapng big{true};
    big.section().interface(1).enhanced(0, 6, svFrame("A", 1, 8));
    std::string path = writeTemp("reread.pcapng", concat({little.out, big.out}));
    Db db;
    parse(path, db);
    const std::uint64_t gooseAt = db.gooseProto.gooses.begin()->files.begin()->packages[0].offset;
    const std::uint64_t svAt = db.svProto.svs.begin()->files.begin()->packages[0].offset;
    EXPECT_EQ(GooseParser::parseGoosePDUFromFile(path, gooseAt).goId, "F650_GOOSE1");
    EXPECT_EQ(SvParser::parseASDUFromFile(path, svAt).at(0).values.size(), 8u);
    // The section header and the interface block are blocks, but not frames.
    for (std::uint64_t notAFrame : {std::uint64_t{0}, little.out.size() + 28})
        EXPECT_THAT(errorOf([&] { SvParser::parseASDUFromFile(path, notAFrame); }),
                    HasSubstr("no frame record"));
}

TEST(Progress, fractionOfBytesAtMostAboutTwoHundredTimes) {
    std::vector<double> seen;
    std::atomic<bool> cancel{false};
    Db db;
    PcapParser::parseFile(sharedCapture("sv_gen_8streams_4000loops_novlan.pcap"), db, {}, cancel,
                          [&](double f) { seen.push_back(f); });
    ASSERT_FALSE(seen.empty());
    EXPECT_LE(seen.size(), 201u);
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
    EXPECT_GT(seen.front(), 0.0);
    EXPECT_EQ(seen.back(), 1.0);
}

TEST(Progress, cancelStopsEarlyAndKeepsWhatWasRead) {
    std::atomic<bool> cancel{false};
    Db db;
    int calls = 0;
    FileStats stats;
    PcapParser::parseFile(
        sharedCapture("sv_gen_8streams_4000loops_novlan.pcap"), db, {}, cancel,
        [&](double) {
            ++calls;
            cancel = true;
        },
        stats);
    EXPECT_EQ(calls, 1);
    EXPECT_GT(stats.frames, 0u);
    EXPECT_LT(stats.frames, 32000u);
    std::uint64_t stored = 0;
    for (const Sv& s : db.svProto.svs)
        stored += s.packageCount();
    EXPECT_EQ(stored, stats.svFrames);
}

TEST(Reread, aFileRewrittenInPlaceAndParsedAgainReadsItsNewFrames) {
    std::string path =
        writeTemp("inplace.cap", pcapFile({{1, 0, svFrame("Old", 1, 8)}}, false, false));
    Db db;
    parse(path, db);
    EXPECT_EQ(SvParser::parseASDUFromFile(path, 24).at(0).svId, "Old");
    // Same path and inode, other container: nothing of the old file may linger.
    Pcapng ng;
    ng.section().interface(1).enhanced(0, 1, svFrame("New", 1, 8));
    {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(ng.out.data()),
                  static_cast<std::streamsize>(ng.out.size()));
    }
    parse(path, db);
    ASSERT_EQ(db.svProto.getSvCount(), 1u);
    const Sv& s = *db.svProto.svs.begin();
    EXPECT_EQ(s.svId, "New");
    EXPECT_EQ(SvParser::parseASDUFromFile(path, s.files.begin()->packages[0].offset).at(0).svId,
              "New");
}
