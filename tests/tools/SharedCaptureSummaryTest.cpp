// The inspector over every real capture of the shared test data, against the
// expected summaries made by an independent dissector.
#include "tests/support/Json.h"
#include "tests/support/TestCaptures.h"
#include "tests/tools/ToolRunner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace {

using TavTest::Json;

constexpr double kTimeTolerance = 5e-7; // half a microsecond

std::vector<std::string> captureNames() {
    std::vector<std::string> names;
    const std::filesystem::path dir = TavTest::sharedCapture("");
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(dir, ec)) {
        const std::string file = entry.path().filename().string();
        const std::string suffix = ".expected.json";
        if (file.size() > suffix.size() && file.ends_with(suffix))
            names.push_back(file.substr(0, file.size() - suffix.size()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// The expected summaries copy "first" into "last"; these were checked by hand.
std::optional<double> trueLastTime(const std::string& capture, const std::string& src) {
    static const std::map<std::pair<std::string, std::string>, double> known{
        {{"goose_3pub_interlocking_vlan0_451frames", "0a:bb:fe:10:c9:02"}, 1216909245.391014},
        {{"goose_3pub_interlocking_vlan0_451frames", "0a:bb:fe:10:c9:06"}, 1216909243.720025},
        {{"goose_3pub_interlocking_vlan0_451frames", "0a:bb:fe:10:c9:08"}, 1216909245.467042},
    };
    if (capture == "sv_gen_8streams_4000loops_novlan")
        return 1.999751;
    const auto it = known.find({capture, src});
    if (it != known.end())
        return it->second;
    return std::nullopt;
}

// Time of the last record of a little-endian microsecond pcap file, read
// independently of the library: the last frame of a one-stream capture.
double lastRecordTime(const std::string& path) {
    const std::string bytes = readFile(path);
    auto u32 = [&](std::size_t at) {
        std::uint32_t v = 0;
        for (int i = 3; i >= 0; --i)
            v = v << 8 | static_cast<unsigned char>(bytes.at(at + i));
        return v;
    };
    EXPECT_EQ(u32(0), 0xa1b2c3d4u) << "expected a little-endian microsecond pcap";
    double last = 0;
    for (std::size_t at = 24; at + 16 <= bytes.size(); at += 16 + u32(at + 8))
        last = u32(at) + u32(at + 4) / 1e6;
    return last;
}

class InspectCaptures : public ::testing::TestWithParam<std::string> {
protected:
    std::string path() const { return TavTest::sharedCapture(GetParam() + ".pcap"); }
    Json expected() const {
        return Json::parse(readFile(TavTest::sharedCapture(GetParam() + ".expected.json")));
    }
    Json inspect() const {
        const auto r = TavTest::runTool("TAVNA_INSPECT", {"--json", path()});
        EXPECT_EQ(r.exitCode, 0) << r.err;
        return Json::parse(r.out);
    }
};

void expectSameValue(const Json& want, const Json& got, const std::string& where) {
    if (std::holds_alternative<Json::Number>(want.value)) {
        ASSERT_TRUE(std::holds_alternative<Json::Number>(got.value)) << where;
        EXPECT_NEAR(got.number(), want.number(), kTimeTolerance) << where;
    } else if (std::holds_alternative<std::string>(want.value)) {
        EXPECT_EQ(got.string(), want.string()) << where;
    } else if (std::holds_alternative<bool>(want.value)) {
        EXPECT_EQ(got.boolean(), want.boolean()) << where;
    } else if (want.isNull()) {
        EXPECT_TRUE(got.isNull()) << where;
    } else {
        FAIL() << where << ": unexpected kind of expected value";
    }
}

TEST_P(InspectCaptures, StreamsMatchTheExpectedSummary) {
    const Json want = expected();
    const Json got = inspect();
    ASSERT_EQ(got["streams"].size(), want["streams"].size());
    for (std::size_t i = 0; i < want["streams"].size(); ++i) {
        const Json& w = want["streams"][i];
        const Json& g = got["streams"][i];
        for (const auto& [key, value] : w.object()) {
            if (key == "last" || key == "first_samples")
                continue;
            ASSERT_TRUE(g.has(key)) << "stream " << i << " lacks " << key;
            expectSameValue(value, g[key], "stream " + std::to_string(i) + " " + key);
        }
        const auto last = trueLastTime(GetParam(), w["src"].string());
        if (last) {
            EXPECT_NEAR(g["last"].number(), *last, kTimeTolerance) << "stream " << i;
        } else if (w["packets"].number() == 1) {
            EXPECT_EQ(g["last"].numberText(), g["first"].numberText()) << "stream " << i;
        } else {
            ASSERT_EQ(want["streams"].size(), 1u) << "no true last time known for stream " << i;
            EXPECT_NEAR(g["last"].number(), lastRecordTime(path()), kTimeTolerance);
        }
    }
}

TEST_P(InspectCaptures, FileCountsAddUp) {
    const Json got = inspect();
    ASSERT_EQ(got["files"].size(), 1u);
    const Json& f = got["files"][0];
    EXPECT_EQ(f["path"].string(), path());
    EXPECT_EQ(f["format"].string(), "pcap-us");
    EXPECT_EQ(f["malformed_frames"].number(), expected()["malformed_frames"].number());
    EXPECT_EQ(f["frames"].number(), f["sv_frames"].number() + f["goose_frames"].number() +
                                        f["malformed_frames"].number() +
                                        f["other_frames"].number());
    double packets = 0;
    for (const auto& s : got["streams"].array())
        packets += s["packets"].number();
    EXPECT_EQ(packets, f["sv_frames"].number() + f["goose_frames"].number());
}

TEST_P(InspectCaptures, ValuesGiveTheFirstSamplesAndEveryFrame) {
    const Json want = expected();
    for (std::size_t i = 0; i < want["streams"].size(); ++i) {
        const Json& w = want["streams"][i];
        const auto r = TavTest::runTool("TAVNA_INSPECT", {"--values", std::to_string(i), path()});
        ASSERT_EQ(r.exitCode, 0) << r.err;
        const auto rows = TavTest::parseCsv(r.out);
        ASSERT_FALSE(rows.empty());
        const bool sv = w["kind"].string() == "SV";
        EXPECT_EQ(rows[0][1], sv ? "smpCnt" : "stNum");
        const double asdus = sv ? w["asdus_per_frame"].number() : 1;
        EXPECT_EQ(static_cast<double>(rows.size() - 1), w["packets"].number() * asdus);
        if (!w.has("first_samples"))
            continue;
        const Json& samples = w["first_samples"];
        for (std::size_t k = 0; k < samples.size(); ++k) {
            const auto& row = rows.at(k + 1);
            const Json& s = samples[k];
            EXPECT_NEAR(std::stod(row[0]), s["time"].number(), kTimeTolerance);
            EXPECT_EQ(std::stod(row[1]), s["smpCnt"].number());
            ASSERT_EQ(row.size(), 2 + s["values"].size());
            for (std::size_t c = 0; c < s["values"].size(); ++c)
                EXPECT_EQ(std::stod(row[2 + c]), s["values"][c].number())
                    << "stream " << i << " sample " << k << " value " << c;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(SharedCaptures, InspectCaptures, ::testing::ValuesIn(captureNames()),
                         [](const auto& info) {
                             std::string name = info.param;
                             std::replace_if(
                                 name.begin(), name.end(), [](char c) { return !std::isalnum(c); },
                                 '_');
                             return name;
                         });

} // namespace
