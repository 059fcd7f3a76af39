// The order of the stream list: natural order of names, then the full key.
#include "presenter/StreamOrder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using TavNA::naturalLess;
using TavNA::streamBefore;
using TavNA::StreamSortKey;

struct Pair {
    const char* before;
    const char* after;
};

class NaturalOrder : public testing::TestWithParam<Pair> {};

TEST_P(NaturalOrder, PutsTheFirstBeforeTheSecondAndNeverTheReverse) {
    const auto [before, after] = GetParam();
    EXPECT_TRUE(naturalLess(before, after)) << before << " < " << after;
    EXPECT_FALSE(naturalLess(after, before)) << after << " < " << before;
}

INSTANTIATE_TEST_SUITE_P(Names, NaturalOrder,
                         testing::Values(Pair{"TavnaSV2", "TavnaSV10"}, // by value
                                         Pair{"TavnaSV9", "TavnaSV10"}, // not by text
                                         Pair{"MU1_2", "MU1_10"},       // second run
                                         Pair{"MU2_99", "MU10_1"},      // first run wins
                                         Pair{"SV", "SV1"},             // prefix first
                                         Pair{"SV1", "SVa"},            // digits before letters
                                         Pair{"SV05", "SV5"},           // zeros: total order
                                         Pair{"SV00009", "SV10"},       // zeros do not count
                                         Pair{"", "A"},                 // empty first
                                         Pair{"Bay1MU01", "Bay1MU2"},   // zero-padded run
                                         Pair{"A99999999999999999999", "A100000000000000000000"}));

TEST(NaturalOrder, EqualNamesAreNotLess) {
    for (const char* name : {"", "TavnaSV10", "0", "MU01_02"})
        EXPECT_FALSE(naturalLess(name, name)) << name;
}

struct KeyPair {
    StreamSortKey before;
    StreamSortKey after;
    const char* why;
};

class StreamKeyOrder : public testing::TestWithParam<KeyPair> {};

TEST_P(StreamKeyOrder, PutsTheFirstBeforeTheSecond) {
    const KeyPair& p = GetParam();
    EXPECT_TRUE(streamBefore(p.before, p.after)) << p.why;
    EXPECT_FALSE(streamBefore(p.after, p.before)) << p.why;
}

INSTANTIATE_TEST_SUITE_P(
    Keys, StreamKeyOrder,
    testing::Values(KeyPair{{"01:0c:cd:04:00:01", "Z", "02:00:00:00:00:09"},
                            {"01:0c:cd:04:00:02", "A", "02:00:00:00:00:01"},
                            "the destination MAC comes first"},
                    KeyPair{{"01:0c:cd:04:00:0a", "X", "s"},
                            {"01:0C:CD:04:00:0B", "X", "s"},
                            "MAC hex digits in either case"},
                    KeyPair{{"01:0c:cd:04:00:01", "TavnaSV2", "02:00:00:00:00:09"},
                            {"01:0c:cd:04:00:01", "TavnaSV10", "02:00:00:00:00:01"},
                            "then the name, naturally"},
                    KeyPair{{"01:0c:cd:04:00:01", "MU", "02:00:00:00:00:01"},
                            {"01:0c:cd:04:00:01", "MU", "02:00:00:00:00:02"},
                            "then the source MAC"}));

} // namespace
