// The capture writer's fault options: a wrong one is a usage error that says
// what is wrong, and no capture is left behind.
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

struct BadFault {
    std::string name;
    std::vector<std::string> args;
    std::string says;
};

class FaultOptions : public testing::TestWithParam<BadFault> {};

TEST_P(FaultOptions, AreUsageErrors) {
    const BadFault& c = GetParam();
    const std::string out = TavTest::tempDir() + "/bad_" + c.name + ".pcap";
    std::vector<std::string> argv{TavTest::toolPath("TAVNA_GEN"), out, "--sv", "1"};
    argv.insert(argv.end(), c.args.begin(), c.args.end());
    std::string stdOut, stdErr;
    EXPECT_EQ(TavTest::runCommand(argv, stdOut, &stdErr), 2);
    EXPECT_NE(stdErr.find(c.says), std::string::npos) << stdErr;
    EXPECT_FALSE(std::filesystem::exists(out));
}

INSTANTIATE_TEST_SUITE_P(
    Gen, FaultOptions,
    testing::Values(BadFault{"no_time", {"--sv-fault", "drop"}, "KIND[:VALUE]@SECONDS"},
                    BadFault{"unknown_kind", {"--sv-fault", "melt@1"}, "unknown fault 'melt'"},
                    BadFault{"bad_count", {"--sv-fault", "drop@1x"}, "bad number"},
                    BadFault{"bad_value", {"--sv-fault", "quality:0xZZ@1"}, "bad number"},
                    BadFault{"bad_time", {"--goose-fault", "repeat@soon"}, "not a time"},
                    BadFault{"missing", {"--goose-fault"}, "needs a value"}),
    [](const auto& info) { return info.param.name; });

} // namespace
