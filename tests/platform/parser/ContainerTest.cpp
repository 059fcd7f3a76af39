#include "tests/platform/parser/CaptureBytes.h"

#include "platform/parser/ParseError.h"
#include "platform/parser/SvParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace TavIec61850Parser;
using namespace TavTest;
using ::testing::HasSubstr;

namespace {

const Sv& onlySv(const Db& db) {
    EXPECT_EQ(db.svProto.getSvCount(), 1u);
    return *db.svProto.svs.begin();
}

const PackageFile& onlyFile(const Sv& sv) {
    EXPECT_EQ(sv.files.size(), 1u);
    return *sv.files.begin();
}

class PcapVariants : public ::testing::TestWithParam<std::tuple<bool, bool>> {};

} // namespace

TEST_P(PcapVariants, readsTimesOffsetsAndFramesBack) {
    const auto [big, ns] = GetParam();
    const std::uint32_t fraction = ns ? 123'456'789u : 123'456u;
    // The second frame carries an over-long fraction, which rolls into the seconds.
    const std::uint32_t overlong = ns ? 1'500'000'000u : 1'500'000u;
    Bytes file = pcapFile(
        {{100, fraction, svFrame("A", 1, 8)}, {100, overlong, svFrame("A", 2, 3)}}, big, ns);
    std::string path = writeTemp(std::string("v") + (big ? "b" : "l") + (ns ? "n" : "u"), file);
    Db db;
    FileStats stats = parse(path, db);
    EXPECT_EQ(stats.format, ns ? "pcap-ns" : "pcap-us");
    EXPECT_EQ(stats.frames, 2u);
    EXPECT_EQ(stats.svFrames, 2u);

    const PackageFile& f = onlyFile(onlySv(db));
    ASSERT_EQ(f.packages.size(), 2u);
    EXPECT_EQ(f.packages[0].time, (Timest{100, ns ? 123'456'789u : 123'456'000u}));
    EXPECT_EQ(f.packages[1].time, (Timest{101, 500'000'000u}));
    EXPECT_EQ(f.packages[0].offset, 24u);
    EXPECT_EQ(f.packages[1].offset, 24u + 16 + svFrame("A", 1, 8).size());

    auto second = SvParser::parseASDUFromFile(path, f.packages[1].offset);
    ASSERT_EQ(second.size(), 2u);
    EXPECT_EQ(second[1].values.size(), 3u);
    EXPECT_EQ(second[1].values[2].value, 102);
    EXPECT_EQ(second[1].counters.smpCnt, 1);
}

INSTANTIATE_TEST_SUITE_P(ByteOrderAndResolution, PcapVariants,
                         ::testing::Combine(::testing::Bool(), ::testing::Bool()),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param) ? "Big" : "Little") +
                                    (std::get<1>(info.param) ? "Nano" : "Micro");
                         });

TEST(Pcapng, sectionsInterfacesAndBlockKinds) {
    Bytes sv = svFrame("A", 1, 8);
    Pcapng little;
    little.section()
        .interface(1, 9, 10) // nanoseconds, 10 s offset
        .interface(105)      // not Ethernet
        .enhanced(0, 5'000'000'250ull, sv)
        .block(0x0BAD, Bytes(7, 0xEE)) // unknown: skipped
        .enhanced(1, 1, sv);
    Pcapng big{true};
    big.section()
        .interface(1, 0x80 | 20)     // 2^-20 s
        .interface(1, 3, -1'000'000) // milliseconds, offset back in time
        .enhanced(0, (std::uint64_t{7} << 20) + (1 << 19), sv)
        .obsolete(1, 2'000'000'500ull, sv)
        .simple(sv);
    std::string path = writeTemp("sections.pcapng", concat({little.out, big.out}));

    Db db;
    FileStats stats = parse(path, db);
    EXPECT_EQ(stats.format, "pcapng");
    EXPECT_EQ(stats.frames, 5u);
    EXPECT_EQ(stats.svFrames, 4u);
    EXPECT_EQ(stats.otherFrames, 1u);

    const PackageFile& f = onlyFile(onlySv(db));
    ASSERT_EQ(f.packages.size(), 4u);
    EXPECT_EQ(f.packages[0].time, (Timest{15, 250}));
    EXPECT_EQ(f.packages[1].time, (Timest{7, 500'000'000}));
    EXPECT_EQ(f.packages[2].time, (Timest{1'000'000, 500'000'000}));
    // A simple packet block has no time of its own and keeps the one before.
    EXPECT_EQ(f.packages[3].time, f.packages[2].time);
    EXPECT_FALSE(f.timeOrdered);
    EXPECT_EQ(f.getBeginTime(), (Timest{7, 500'000'000}));
    EXPECT_EQ(f.getEndTime(), (Timest{1'000'000, 500'000'000}));
    for (const Package& p : f.packages)
        EXPECT_EQ(SvParser::parseASDUFromFile(path, p.offset).at(0).values.at(0).value, 0)
            << p.offset;
}

TEST(Container, nonEthernetPcapIsCountedAsOther) {
    std::string path =
        writeTemp("raw.pcap", pcapFile({{1, 0, svFrame("A", 1, 8)}}, false, false, 101));
    Db db;
    FileStats stats = parse(path, db);
    EXPECT_EQ(stats.frames, 1u);
    EXPECT_EQ(stats.otherFrames, 1u);
    EXPECT_EQ(db.svProto.getSvCount(), 0u);
}

namespace {

std::string parseError(const std::string& path, Db& db) {
    try {
        parse(path, db);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "no error";
}

} // namespace

TEST(BadInput, fileLevelErrorsNameTheFileAndTheReason) {
    Db db;
    std::string empty = writeTemp("empty.pcap", {});
    EXPECT_EQ(parseError(empty, db), empty + ": empty file");
    std::string notCapture = writeTemp("text.pcap", text("this is no capture at all"));
    EXPECT_EQ(parseError(notCapture, db), notCapture + ": not a pcap or pcapng file");
    std::string missing = tempDir() + "/missing.pcap";
    EXPECT_THAT(parseError(missing, db), HasSubstr(missing + ": cannot open"));
    EXPECT_THAT(parseError(tempDir(), db), HasSubstr("not a regular file"));
}

TEST(BadInput, truncationKeepsWhatCameBefore) {
    Bytes sv = svFrame("A", 1, 8);
    Bytes whole = pcapFile({{1, 0, sv}, {2, 0, sv}, {3, 0, sv}}, false, false);
    const std::size_t third = 24 + 2 * (16 + sv.size());
    // Cut inside the third frame's bytes, then inside its record header.
    for (std::size_t cut : {whole.size() - 5, third + 7}) {
        std::string path = writeTemp("cut.pcap", Bytes(whole.begin(), whole.begin() + cut));
        Db db;
        EXPECT_EQ(parseError(path, db), path + ": truncated at byte " + std::to_string(third));
        EXPECT_EQ(onlyFile(onlySv(db)).packages.size(), 2u);
    }
}

TEST(BadInput, corruptPcapngBlocks) {
    Bytes sv = svFrame("A", 1, 8);
    Pcapng p;
    p.section().interface(1).enhanced(0, 1, sv);
    const std::size_t good = p.out.size();
    p.enhanced(0, 2, sv);

    Bytes cut(p.out.begin(), p.out.end() - 4);
    std::string path = writeTemp("cut.pcapng", cut);
    Db db;
    EXPECT_EQ(parseError(path, db), path + ": truncated at byte " + std::to_string(good));
    EXPECT_EQ(onlyFile(onlySv(db)).packages.size(), 1u);

    Bytes badTrailer = p.out;
    badTrailer.back() ^= 0x40;
    path = writeTemp("trailer.pcapng", badTrailer);
    EXPECT_EQ(parseError(path, db),
              path + ": corrupt block length at byte " + std::to_string(good));

    Pcapng undeclared;
    undeclared.section().enhanced(3, 1, sv);
    path = writeTemp("undeclared.pcapng", undeclared.out);
    EXPECT_THAT(parseError(path, db), HasSubstr("undeclared interface"));

    Pcapng tooFine; // a resolution finer than a nanosecond
    tooFine.section().interface(1, 25).enhanced(0, 1, sv);
    EXPECT_THROW(parse(writeTemp("fine.pcapng", tooFine.out), db), ParseError);
}
