// Runs the real host executable under the test's display and reads what it
// did from its exit code, its output and the test module's record.
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

using TavTest::shellQuote;

struct HostRun {
    int exitCode = -1;
    std::string output; // standard output and error together
};

// `env` entries are NAME=VALUE; TAVNA_MODULE from the caller's environment is
// always dropped so that only the test decides which module loads.
HostRun runHost(const std::vector<std::string>& env, const std::vector<std::string>& args,
                const std::string& exe = TAVNA_EXE, const std::string& prefix = "") {
    const std::string state = TavTest::tempDir() + "/state";
    std::string cmd =
        prefix +
        "env -u TAVNA_MODULE TAVNA_NO_DIALOGS=1 NO_AT_BRIDGE=1 XDG_STATE_HOME=" + shellQuote(state);
    for (const auto& e : env)
        cmd += " " + shellQuote(e);
    // A host that hangs must fail the test, not stall it.
    cmd += " timeout 60 " + shellQuote(exe);
    for (const auto& a : args)
        cmd += " " + shellQuote(a);
    cmd += " 2>&1";
    HostRun run;
    run.exitCode = TavTest::runCommand({"sh", "-c", cmd}, run.output);
    return run;
}

std::string freshRecord(const std::string& name) {
    const std::string path = TavTest::tempDir() + "/" + name + ".record";
    fs::remove(path);
    return path;
}

TEST(HostApplication, LoadsOpensHandsFilesClosesAndDestroysTheModule) {
    const std::string record = freshRecord("full");
    const std::string relative = "some capture.pcap";
    const HostRun run =
        runHost({"TAVNA_TEST_MODULE_RECORD=" + record, "TAVNA_TEST_MODULE_CLOSE_MS=200"},
                {"--module", TEST_MODULE, "/data/first.pcap", relative});
    ASSERT_EQ(run.exitCode, 0) << run.output;
    const std::vector<std::string> expected{
        "constructed",
        "open over TavNA version 1.0.0",
        "file /data/first.pcap",
        "file " + (fs::current_path() / relative).string(),
        "closing",
        "destroyed",
    };
    EXPECT_EQ(TavTest::readLines(record), expected) << run.output;
}

TEST(HostApplication, ClosingTheHostWindowClosesTheModuleFirst) {
    const std::string record = freshRecord("quit");
    const HostRun run =
        runHost({"TAVNA_TEST_MODULE_RECORD=" + record, "TAVNA_TEST_MODULE_CLOSE_HOST_MS=100"},
                {"--module", TEST_MODULE});
    ASSERT_EQ(run.exitCode, 0) << run.output;
    const auto lines = TavTest::readLines(record);
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2], "closing the host");
    EXPECT_EQ(lines.back(), "destroyed");
}

TEST(HostApplication, TakesTheModuleFromTheEnvironmentRelativeToTheWorkingFolder) {
    const std::string record = freshRecord("env");
    // From the module's own folder its path is a bare file name, which the
    // dynamic loader alone would look for on the library path.
    const fs::path module = TEST_MODULE;
    const std::string command = "cd " + shellQuote(module.parent_path().string()) + " && ";
    const HostRun run =
        runHost({"TAVNA_MODULE=" + module.filename().string(), "TAVNA_TEST_MODULE_RECORD=" + record,
                 "TAVNA_TEST_MODULE_CLOSE_MS=50"},
                {}, TAVNA_EXE, command);
    ASSERT_EQ(run.exitCode, 0) << run.output;
    const auto lines = TavTest::readLines(record);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), "constructed");
    EXPECT_EQ(lines.back(), "destroyed");
}

TEST(HostApplication, ABrokenModuleEndsWithAMessageAndAFailure) {
    struct Case {
        std::string name;
        std::string module;
        std::vector<std::string> env;
        std::string reason;
    };
    const std::string missing = TavTest::tempDir() + "/missing/libnothing.so";
    const std::vector<Case> cases{
        {"missing file", missing, {}, "no such file"},
        {"no factory", NOFACTORY_MODULE, {}, "tavna_create_shell"},
        {"factory returns null",
         TEST_MODULE,
         {"TAVNA_TEST_MODULE_FAIL=null"},
         "returned no module"},
        {"factory throws",
         TEST_MODULE,
         {"TAVNA_TEST_MODULE_FAIL=throw"},
         "the test module refuses to start"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const HostRun run = runHost(c.env, {"--module", c.module});
        EXPECT_EQ(run.exitCode, 2) << run.output;
        EXPECT_NE(run.output.find("tavna: module " + c.module), std::string::npos) << run.output;
        EXPECT_NE(run.output.find(c.reason), std::string::npos) << run.output;
    }
}

TEST(HostApplication, LooksForTheAnalyserBesideTheExecutable) {
    const fs::path bin = fs::path(TavTest::tempDir()) / "bin";
    fs::create_directories(bin);
    const fs::path exe = bin / "tavna";
    fs::copy_file(TAVNA_EXE, exe, fs::copy_options::overwrite_existing);
    const HostRun run = runHost({}, {}, exe.string());
    EXPECT_EQ(run.exitCode, 2) << run.output;
    const std::string expected = (bin / "modules" / "libtavna-network-analyzer.so").string();
    EXPECT_NE(run.output.find(expected), std::string::npos) << run.output;
}

TEST(HostApplication, RejectsUnknownOptions) {
    const HostRun run = runHost({}, {"--frobnicate"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find("unknown option --frobnicate"), std::string::npos) << run.output;
}

} // namespace
