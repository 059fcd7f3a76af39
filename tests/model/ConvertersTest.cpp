#include "model/Converters.h"

#include <climits>
#include <gtest/gtest.h>

using TavNA::Converters::formatNumberReadable;
using TavNA::Converters::intToHexString;

TEST(Converters, HexHasNoPaddingAndShowsTwosComplement) {
    EXPECT_EQ(intToHexString(0), "0x0");
    EXPECT_EQ(intToHexString(255), "0xff");
    EXPECT_EQ(intToHexString(4096), "0x1000");
    EXPECT_EQ(intToHexString(0x4000), "0x4000");
    EXPECT_EQ(intToHexString(-1), "0xffffffff");
    EXPECT_EQ(intToHexString(INT_MIN), "0x80000000");
}

TEST(Converters, ReadableCountsKeepTheirDocumentedQuirks) {
    const std::pair<int, const char*> cases[] = {
        {0, "0"},          {999, "999"},      {1000, "1.0K"},       {1500, "1.5K"},
        {9999, "10.0K"},   {10000, "10K"},    {12345, "12K"},       {100000, "100K"},
        {999999, "1000K"}, {1500000, "1.5M"}, {2000000000, "2.0B"}, {-2500, "-2.5K"},
        {-7, "-7"},        {INT_MAX, "2.1B"}, {INT_MIN, "-2.1B"},
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(formatNumberReadable(value), text) << "for " << value;
}
