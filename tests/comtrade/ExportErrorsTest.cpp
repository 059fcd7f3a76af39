// Every export that cannot be made says why, and leaves no file behind.
#include "comtrade/ChannelChoices.h"
#include "comtrade/ComtradeError.h"
#include "comtrade/ComtradeExporter.h"
#include "tests/comtrade/CaptureTruth.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace TavComtrade;
namespace fs = std::filesystem;

std::vector<std::string> filesIn(const std::string& dir) {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(dir))
        names.push_back(e.path().filename().string());
    return names;
}

// A fresh, empty folder for one case's output.
std::string outputDir(const std::string& name) {
    const std::string dir = TavTest::tempDir() + "/errors_" + name;
    fs::create_directories(dir);
    return dir;
}

struct CommandCase {
    const char* name;
    std::vector<std::vector<std::string>> captures; // generator options, one capture each
    std::vector<std::string> args;                  // before the captures; OUT is added first
    int code;
    std::string message;
    std::vector<std::string> left; // what the output folder holds afterwards
};

class CommandErrors : public ::testing::TestWithParam<CommandCase> {};

TEST_P(CommandErrors, SayWhyAndLeaveNothingHalfWritten) {
    const auto& c = GetParam();
    const std::string dir = outputDir(c.name);
    std::vector<std::string> args{TavTest::toolPath("TAVNA_INSPECT"), "--comtrade", dir + "/out"};
    if (std::string(c.name) == "cfgIsAFolder")
        fs::create_directory(dir + "/out.cfg");
    if (std::string(c.name) == "noFolder")
        args[2] = dir + "/missing/out";
    args.insert(args.end(), c.args.begin(), c.args.end());
    for (std::size_t i = 0; i < c.captures.size(); ++i)
        args.push_back(TavTest::generated(std::string(c.name) + std::to_string(i), c.captures[i]));
    std::string out, err;
    EXPECT_EQ(TavTest::runCommand(args, out, &err), c.code) << err;
    EXPECT_NE(err.find(c.message), std::string::npos) << err;
    EXPECT_EQ(filesIn(dir), c.left);
}

const std::vector<std::string> oneSv{"--sv", "1", "--duration", "0.01"};

INSTANTIATE_TEST_SUITE_P(
    Inputs, CommandErrors,
    ::testing::Values(
        CommandCase{"noChannel",
                    {{"--goose", "1", "--bools", "0", "--bitstrings", "2", "--duration", "0.01"}},
                    {},
                    1,
                    "tavna-inspect: no channel chosen",
                    {}},
        CommandCase{"emptyWindow",
                    {oneSv},
                    {"--from", "1700000001", "--to", "1700000002"},
                    1,
                    "tavna-inspect: no sample of TavnaSV00 in the window",
                    {}},
        CommandCase{"ratesDiffer",
                    {{"--sv", "2", "--duration", "0.01"},
                     {"--sv", "3", "--duration", "0.01", "--rate", "14400"}},
                    {"--streams", "1,2"},
                    1,
                    "SV streams of different sample rates cannot be aligned: TavnaSV01 at 4000 "
                    "Hz, TavnaSV02 at 14400 Hz",
                    {}},
        CommandCase{"noFolder", {oneSv}, {}, 1, "/missing/out.dat: No such file", {}},
        CommandCase{"cfgIsAFolder", {oneSv}, {}, 1, "cannot write", {"out.cfg"}},
        CommandCase{"noSuchStream", {oneSv}, {"--streams", "3"}, 2, "no stream 3", {}},
        CommandCase{"badRevision", {oneSv}, {"--rev", "2001"}, 2, "--rev is 1999 or 2013", {}},
        CommandCase{"backwardsWindow",
                    {oneSv},
                    {"--from", "1700000000.5", "--to", "1700000000.1"},
                    2,
                    "--to is before --from",
                    {}}),
    [](const auto& info) { return std::string(info.param.name); });

class LibraryErrors : public ::testing::Test {
protected:
    LibraryErrors()
        : path(TavTest::generated("errors_mixed", {"--sv", "1", "--duration", "0.2", "--goose", "1",
                                                   "--bools", "1", "--bitstrings", "1"})),
          capture(TavTest::loadCapture({path})) {}

    ComtradeError::Kind failure(const ExportRequest& request, const ProgressSink& progress,
                                std::string& message) {
        try {
            ComtradeExporter::write(dir + "/out", request, progress);
        } catch (const ComtradeError& e) {
            message = e.what();
            return e.kind();
        }
        ADD_FAILURE() << "the export went through";
        return ComtradeError::Kind::NoChannel;
    }

    std::string path;
    std::unique_ptr<TavTest::Capture> capture;
    std::string dir = outputDir(::testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(LibraryErrors, AnEntryThatIsNotABooleanIsRefused) {
    const auto& goose = capture->goose("TavnaGOOSE00");
    ExportRequest request;
    request.digital = {{&goose, 0, "1 | TavnaGOOSE00"}, {&goose, 1, "2 | TavnaGOOSE00"}};
    std::string message;
    EXPECT_EQ(failure(request, {}, message), ComtradeError::Kind::NotBoolean);
    EXPECT_EQ(message,
              "GOOSE entries that are not booleans cannot be digital channels: 2 | TavnaGOOSE00");
    EXPECT_TRUE(filesIn(dir).empty());
}

TEST_F(LibraryErrors, ACancelledExportLeavesNothing) {
    ExportRequest request;
    request.analog = allChannels(capture->sv("TavnaSV00"));
    std::vector<double> shares;
    const auto cancelHalfWay = [&](double done) {
        shares.push_back(done);
        return done < 0.6;
    };
    std::string message;
    EXPECT_EQ(failure(request, cancelHalfWay, message), ComtradeError::Kind::Cancelled);
    EXPECT_EQ(message, "export cancelled");
    ASSERT_FALSE(shares.empty());
    EXPECT_GE(shares.back(), 0.5); // the data file was being written
    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
    EXPECT_TRUE(filesIn(dir).empty());
}

} // namespace
