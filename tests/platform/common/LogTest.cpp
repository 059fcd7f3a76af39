#include "platform/common/Log.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;

using TavTest::readLines;

class LogTest : public testing::Test {
protected:
    void SetUp() override {
        path_ = TavTest::tempDir() + "/" +
                testing::UnitTest::GetInstance()->current_test_info()->name() + ".log";
        fs::remove(path_);
        TavLog::Log::setEcho(false);
        TavLog::Log::setFilePath(path_);
    }
    void TearDown() override {
        TavLog::Log::setFilePath("");
        TavLog::Log::setEcho(true);
    }
    std::string path_;
};

TEST_F(LogTest, WritesOneTimedLinePerEventWithItsLevelAndAppends) {
    TavLog::Log::writeInfo("Запуск");
    // Reopening is what a second run of the program does.
    TavLog::Log::setFilePath(path_);
    TavLog::Log::writeError("сбой: файл");
    const auto lines = readLines(path_);
    ASSERT_EQ(lines.size(), 2u);
    const std::string time = R"(\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2}\.\d{3})";
    EXPECT_TRUE(std::regex_match(lines[0], std::regex(time + R"( \[INFO\] Запуск)"))) << lines[0];
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(time + R"( \[ERROR\] сбой: файл)")))
        << lines[1];
}

TEST_F(LogTest, AnUnwritableLogNeverStopsTheProgram) {
    const std::string blocker = TavTest::tempDir() + "/a-file-not-a-folder";
    std::ofstream(blocker) << "x";
    TavLog::Log::setFilePath(blocker + "/tavna.log");
    EXPECT_NO_THROW(TavLog::Log::writeInfo("nowhere to go"));
    EXPECT_NO_THROW(TavLog::Log::writeError("still nowhere"));
    // Pointing it somewhere sane again brings the file back.
    TavLog::Log::setFilePath(path_);
    TavLog::Log::writeInfo("back");
    EXPECT_EQ(readLines(path_).size(), 1u);
}

TEST_F(LogTest, DefaultsToTheUserStateFolder) {
    const char* oldState = std::getenv("XDG_STATE_HOME");
    const char* oldHome = std::getenv("HOME");
    const std::string savedState = oldState ? oldState : "";
    const std::string savedHome = oldHome ? oldHome : "";
    setenv("XDG_STATE_HOME", "/some/state", 1);
    TavLog::Log::setFilePath("");
    EXPECT_EQ(TavLog::Log::filePath(), "/some/state/tavna/tavna.log");
    unsetenv("XDG_STATE_HOME");
    setenv("HOME", "/home/someone", 1);
    EXPECT_EQ(TavLog::Log::filePath(), "/home/someone/.local/state/tavna/tavna.log");
    if (oldState)
        setenv("XDG_STATE_HOME", savedState.c_str(), 1);
    if (oldHome)
        setenv("HOME", savedHome.c_str(), 1);
}

TEST_F(LogTest, LinesFromManyThreadsStayWhole) {
    constexpr int threads = 8;
    constexpr int perThread = 250;
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back([t] {
            for (int i = 0; i < perThread; ++i)
                TavLog::Log::writeInfo("thread " + std::to_string(t) + " line " +
                                       std::to_string(i) + " " + std::string(100, 'x'));
        });
    for (auto& w : workers)
        w.join();
    const auto lines = readLines(path_);
    ASSERT_EQ(lines.size(), static_cast<size_t>(threads * perThread));
    const std::regex whole(R"(.* \[INFO\] thread \d line \d+ x{100})");
    std::vector<int> next(threads, 0);
    for (const auto& line : lines) {
        ASSERT_TRUE(std::regex_match(line, whole)) << line;
        // Each thread's own lines keep their order.
        const int t = line[line.find("thread ") + 7] - '0';
        const int i = std::stoi(line.substr(line.find(" line ") + 6));
        EXPECT_EQ(i, next[t]++);
    }
}

} // namespace
