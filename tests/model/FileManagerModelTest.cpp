#include "model/FileManagerModel.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using TavNA::FileManagerModel;
using TavNA::FileRecordModel;

// What listeners saw, with the list's size at the moment they saw it.
class FileManagerModelTest : public ::testing::Test {
protected:
    void SetUp() override {
        files.signalAdded.connect([this](FileRecordModel* r) { note("added", r); });
        files.signalBeforeRemoved.connect([this](FileRecordModel* r) { note("before", r); });
        files.signalRemoved.connect([this](FileRecordModel* r) { note("removed", r); });
        files.signalCleared.connect([this] { events.push_back("cleared"); });
    }

    void note(const std::string& what, FileRecordModel* record) {
        events.push_back(what + ":" + record->fileName + ":" + std::to_string(files.size()));
        records.push_back(record);
    }

    FileManagerModel files;
    std::vector<std::string> events;
    std::vector<FileRecordModel*> records;
};

TEST_F(FileManagerModelTest, RemovalTellsTwiceWhileTheRecordIsStillListed) {
    files.add("/a.pcap");
    files.add("/b.pcap");
    files.remove("/a.pcap");
    EXPECT_EQ(events, (std::vector<std::string>{"added:/a.pcap:1", "added:/b.pcap:2",
                                                "before:/a.pcap:2", "removed:/a.pcap:2"}));
    EXPECT_EQ(records[2], records[0]);
    EXPECT_EQ(records[3], records[0]);
    EXPECT_EQ(files.size(), 1u);
    EXPECT_FALSE(files.isExists("/a.pcap"));
    EXPECT_TRUE(files.isExists("/b.pcap"));
}

TEST_F(FileManagerModelTest, UnknownNamesAndForeignRecordsChangeNothing) {
    files.add("/a.pcap");
    events.clear();
    files.remove("/A.pcap");
    files.remove("/a.pcap/");
    FileRecordModel stranger;
    stranger.fileName = "/a.pcap";
    files.remove(stranger);
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(files.size(), 1u);
    EXPECT_FALSE(files.isExists(""));
    files.add("");
    EXPECT_TRUE(files.isExists(""));
}

TEST_F(FileManagerModelTest, DuplicatesAreKeptAndRemovedFirstFirst) {
    files.add("/a.pcap");
    files.add("/a.pcap");
    FileRecordModel* second = files.getRecords()[1].get();
    files.remove("/a.pcap");
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files.getRecords()[0].get(), second);

    files.remove(*second);
    EXPECT_EQ(files.size(), 0u);
    EXPECT_EQ(events.back(), "removed:/a.pcap:1");
}

TEST_F(FileManagerModelTest, AFailingRemovalListenerDoesNotKeepTheFile) {
    files.add("/a.pcap");
    files.signalBeforeRemoved.connect(
        [](FileRecordModel*) { throw std::runtime_error("listener failed"); });
    testing::internal::CaptureStdout();
    files.remove("/a.pcap");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "listener failed\n");
    EXPECT_EQ(files.size(), 0u);
    // The guard covers both signals, so the second one is never reached.
    EXPECT_EQ(events.back(), "before:/a.pcap:1");
}

TEST_F(FileManagerModelTest, ClearTellsOnceAndAddFailuresReachTheCaller) {
    files.add("/a.pcap");
    files.add("/b.pcap");
    events.clear();
    files.clear();
    EXPECT_EQ(events, (std::vector<std::string>{"cleared"}));
    EXPECT_EQ(files.size(), 0u);

    files.signalAdded.connect([](FileRecordModel*) { throw std::runtime_error("no"); });
    EXPECT_THROW(files.add("/c.pcap"), std::runtime_error);
    EXPECT_TRUE(files.isExists("/c.pcap"));
}

} // namespace
