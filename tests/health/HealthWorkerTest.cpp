// The worker that runs the checks off the interface thread: every stream
// delivered in order, and nothing delivered once it has been stopped.
#include "health/HealthWorker.h"
#include "health/HealthCounts.h"
#include "platform/parser/PcapParser.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <mutex>
#include <thread>

namespace {

using namespace TavHealth;

struct Loaded {
    TavIec61850Parser::Db db;
    std::vector<HealthTarget> targets;

    explicit Loaded(const std::string& path) {
        std::atomic<bool> cancel{false};
        TavIec61850Parser::PcapParser::parseFile(path, db, {}, cancel, [](double) {});
        for (const auto& sv : db.svProto.svs)
            targets.push_back({&sv, nullptr, nullptr, {}});
        for (const auto& goose : db.gooseProto.gooses)
            targets.push_back({nullptr, &goose, nullptr, {}});
    }
};

struct Deliveries {
    std::mutex lock;
    std::vector<std::size_t> indices;
    std::vector<std::string> remarks;

    HealthWorker::Deliver slot() {
        return
            [this](std::size_t i, std::shared_ptr<const StreamHealth> h, const std::string& error) {
                std::lock_guard guard(lock);
                indices.push_back(i);
                remarks.push_back(h ? remarksText(*h) : "error: " + error);
            };
    }
    std::size_t count() {
        std::lock_guard guard(lock);
        return indices.size();
    }
};

TEST(HealthWorker, DeliversEveryStreamInTheOrderGiven) {
    Loaded loaded(TavTest::generated("worker_small",
                                     {"--sv", "2", "--goose", "1", "--sv-fault", "repeat@0.5"}));
    Deliveries got;
    HealthWorker worker;
    worker.start(loaded.targets, got.slot());
    while (got.count() < 3)
        std::this_thread::yield();
    worker.stop();
    EXPECT_EQ(got.indices, (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(got.remarks,
              (std::vector<std::string>{"smpcnt_duplicates 1", "smpcnt_duplicates 1", ""}));
}

// A file gone since the parse: its reason alone, which the window words in its
// own language beside the stream's name.
TEST(HealthWorker, DeliversTheReasonAStreamCouldNotBeChecked) {
    const std::string copy = TavTest::tempDir() + "/worker_gone.pcap";
    std::filesystem::copy_file(TavTest::generated("worker_small", {}), copy,
                               std::filesystem::copy_options::overwrite_existing);
    Loaded loaded(copy);
    std::filesystem::remove(copy);
    Deliveries got;
    HealthWorker worker;
    worker.start(loaded.targets, got.slot());
    while (got.count() < loaded.targets.size())
        std::this_thread::yield();
    worker.stop();
    EXPECT_EQ(got.remarks.front(), "error: the file is gone");
}

TEST(HealthWorker, DeliversNothingOnceStopped) {
    Loaded loaded(TavTest::generated("worker_long", {"--sv", "4", "--duration", "10"}));
    Deliveries got;
    HealthWorker worker;
    worker.start(loaded.targets, got.slot());
    worker.start(loaded.targets, got.slot()); // a restart stops the first run
    worker.stop();
    const std::size_t atStop = got.count();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(got.count(), atStop);
    EXPECT_LE(atStop, loaded.targets.size());
}

} // namespace
