#include "model/TavNaModel.h"
#include "tests/model/ModelWatch.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace TavNA;
using TavNaTest::ModelWatch;

using TavTest::generated;

std::string svAt(const std::string& name, const std::string& start) {
    return generated(name, {"--sv", "1", "--start", start, "--duration", "0.5"});
}

// Long enough that a cancel lands while it is being read.
std::string bigCapture() {
    return generated("big", {"--sv", "8", "--duration", "6"});
}

std::string gapMessage(const std::string& path) {
    return "У файла " + path +
           " разрыв с текущим временным диапазоном больше 60 сек. Если необходимо откройте файл "
           "отдельно.";
}

void setRange(TavNaModel& model, double start, double end) {
    OscillographModel& range = model.getOscillographModel();
    range.start = start;
    range.end = end;
    range.duration = end - start;
}

// Every path of every stream's files in the database.
std::set<std::string> pathsInDb(TavNaModel& model) {
    std::set<std::string> paths;
    for (const auto& sv : model.getDb().svProto.svs)
        for (const auto& file : sv.files)
            paths.insert(file.path);
    for (const auto& goose : model.getDb().gooseProto.gooses)
        for (const auto& file : goose.files)
            paths.insert(file.path);
    return paths;
}

class TavNaModelTest : public ::testing::Test {
protected:
    TavNaModel model;
    ModelWatch watch{model};
};

TEST_F(TavNaModelTest, ParsedFileIsListedTreedAndNotParsedTwice) {
    const std::string path = svAt("one", "1700000000");
    std::vector<double> progress;
    model.signalProgress.connect([&](double p) { progress.push_back(p); });
    watch.parse(path);

    EXPECT_EQ(watch.events(), (std::vector<std::string>{"started " + path, "finished " + path}));
    EXPECT_EQ(progress.front(), 0.0);
    EXPECT_EQ(progress.back(), 1.0);
    EXPECT_TRUE(model.getFileManagerModel().isExists(path));
    ASSERT_EQ(model.getPackageListModel().getSvProto().getGroups().size(), 1u);
    EXPECT_EQ(model.getPackageListModel().getSvProto().getGroups().getItems()[0]->getSvs()[0]->svId,
              "TavnaSV00");
    // The worker is only joined by the next parse or the end of the model.
    EXPECT_TRUE(model.isParsing());

    progress.clear();
    model.parseFile(path);
    EXPECT_TRUE(progress.empty());
    EXPECT_EQ(watch.events().size(), 2u);
    EXPECT_EQ(model.getFileManagerModel().size(), 1u);
}

TEST_F(TavNaModelTest, GapOfSixtyOneSecondsIsRefusedAndSixtyAccepted) {
    watch.parse(svAt("base", "1700000000"));
    setRange(model, 1700000000.0, 1700000001.0);

    const std::string late = svAt("late61", "1700000062");
    watch.parse(late);
    EXPECT_EQ(watch.messages(), std::vector<std::string>{gapMessage(late)});
    const auto events = watch.events();
    EXPECT_EQ(std::vector<std::string>(events.end() - 2, events.end()),
              (std::vector<std::string>{"message 0", "finished " + late}));
    EXPECT_FALSE(model.getFileManagerModel().isExists(late));
    EXPECT_EQ(pathsInDb(model).count(late), 0u);
    EXPECT_EQ(model.getPackageListModel().getSvProto().getGroups().size(), 1u);

    const std::string early = svAt("early61", "1699999938");
    watch.parse(early);
    EXPECT_EQ(watch.messages().size(), 2u);
    EXPECT_EQ(watch.messages().back(), gapMessage(early));

    const std::string edge = svAt("late60", "1700000061");
    watch.parse(edge);
    EXPECT_EQ(watch.messages().size(), 2u);
    EXPECT_TRUE(model.getFileManagerModel().isExists(edge));
    EXPECT_EQ(pathsInDb(model).count(edge), 1u);
}

TEST_F(TavNaModelTest, FileWithoutStreamsPassesOnlyAnEmptyRange) {
    const std::string other = generated("other", {"--other", "100"});
    watch.parse(other);
    EXPECT_TRUE(watch.messages().empty());
    EXPECT_TRUE(model.getFileManagerModel().isExists(other));

    TavNaModel second;
    ModelWatch secondWatch(second);
    setRange(second, 1700000000.0, 1700000001.0);
    secondWatch.parse(other);
    EXPECT_EQ(secondWatch.messages(), std::vector<std::string>{gapMessage(other)});
    EXPECT_FALSE(second.getFileManagerModel().isExists(other));
}

TEST_F(TavNaModelTest, AFileThatCannotBeReadIsStillListed) {
    const std::string missing = TavTest::tempDir() + "/missing.pcap";
    std::vector<double> progress;
    model.signalProgress.connect([&](double p) { progress.push_back(p); });
    testing::internal::CaptureStdout();
    watch.parse(missing);
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out.rfind("Error: ", 0), 0u) << out;
    EXPECT_NE(out.find("missing.pcap"), std::string::npos) << out;
    EXPECT_EQ(progress, (std::vector<double>{0.0, 0.0}));
    EXPECT_TRUE(model.getFileManagerModel().isExists(missing));
}

TEST_F(TavNaModelTest, CancelLeavesNothingAndTheFileOpensAgain) {
    const std::string big = bigCapture();
    watch.onFirstWorkerProgress([this] { model.stopParsing(); });
    watch.parse(big);
    EXPECT_EQ(watch.events().back(), "finished " + big);
    EXPECT_FALSE(model.getFileManagerModel().isExists(big));
    EXPECT_TRUE(pathsInDb(model).empty());
    EXPECT_TRUE(model.getPackageListModel().getSvProto().getGroups().empty());

    watch.onFirstWorkerProgress(nullptr);
    watch.parse(big);
    EXPECT_TRUE(model.getFileManagerModel().isExists(big));
    EXPECT_EQ(model.getPackageListModel().getSvProto().getGroups().size(), 8u);
}

TEST_F(TavNaModelTest, SecondFileCancelsTheRunningParse) {
    const std::string big = bigCapture();
    const std::string small = svAt("small", "1700000000");
    const int workersBefore = watch.workers();
    model.parseFile(big);
    watch.waitForWorkerProgress();
    model.parseFile(small);
    watch.waitForWorkers(workersBefore + 2);

    EXPECT_EQ(watch.events(), (std::vector<std::string>{"started " + big, "finished " + big,
                                                        "started " + small, "finished " + small}));
    EXPECT_FALSE(model.getFileManagerModel().isExists(big));
    EXPECT_TRUE(model.getFileManagerModel().isExists(small));
    EXPECT_EQ(pathsInDb(model), std::set<std::string>{small});
    EXPECT_EQ(model.getPackageListModel().getSvProto().getGroups().size(), 1u);
}

TEST_F(TavNaModelTest, ModeSwitchEndsTheParseAndEmptiesEverything) {
    watch.parse(svAt("one", "1700000000"));
    const std::string big = bigCapture();
    model.parseFile(big);
    watch.waitForWorkerProgress();

    const int workersBefore = watch.workers();
    model.setEthernetMode();
    EXPECT_EQ(model.getMode(), Mode::Ethernet);
    // The worker is joined, yet a model that has parsed stays "parsing".
    EXPECT_TRUE(model.isParsing());
    EXPECT_EQ(watch.workers(), workersBefore + 1);
    const auto events = watch.events();
    EXPECT_EQ(std::vector<std::string>(events.end() - 2, events.end()),
              (std::vector<std::string>{"finished " + big, "mode"}));
    EXPECT_TRUE(model.getDb().svProto.svs.empty());
    EXPECT_TRUE(model.getDb().gooseProto.gooses.empty());
    EXPECT_EQ(model.getFileManagerModel().size(), 0u);
    EXPECT_TRUE(model.getPackageListModel().getSvProto().getGroups().empty());

    model.setEthernetMode();
    model.setPcapMode();
    EXPECT_EQ(model.getMode(), Mode::Pcap);
    EXPECT_EQ(watch.events().back(), "mode");
    EXPECT_EQ(watch.events().size(), events.size() + 1);
}

// An SV file, then a GOOSE file of the same half second, with the range set.
class FileRemovalTest : public TavNaModelTest {
protected:
    void SetUp() override {
        watch.parse(sv);
        watch.parse(goose);
        setRange(model, 1700000000.0, 1700000000.5);
    }

    const std::string sv = svAt("one", "1700000000");
    const std::string goose =
        generated("goose", {"--goose", "2", "--start", "1700000000", "--duration", "0.5"});
};

TEST_F(FileRemovalTest, RemovingTheLastGooseFileClearsTheRangeWhileSvRemains) {
    ASSERT_EQ(model.getPackageListModel().getGooseProto().getGroups().size(), 2u);

    FileManagerModel& files = model.getFileManagerModel();
    const int updatesBefore = watch.updates();
    files.remove(*files.getRecords()[1]);
    EXPECT_EQ(watch.updates(), updatesBefore + 1);
    EXPECT_EQ(pathsInDb(model), std::set<std::string>{sv});
    EXPECT_EQ(model.getPackageListModel().getSvProto().getGroups().size(), 1u);
    EXPECT_TRUE(model.getPackageListModel().getGooseProto().getGroups().empty());
    EXPECT_EQ(model.getOscillographModel().start, 0.0);
    EXPECT_EQ(model.getOscillographModel().end, 0.0);
    EXPECT_EQ(model.getOscillographModel().duration, 0.0);
}

TEST_F(FileRemovalTest, RemovingAnSvFileKeepsTheRangeWhileGooseRemains) {
    model.getFileManagerModel().remove(sv);
    EXPECT_EQ(pathsInDb(model), std::set<std::string>{goose});
    EXPECT_EQ(model.getOscillographModel().end, 1700000000.5);
}

TEST(TavNaModelLifetime, DestroyingTheModelDuringAParseEndsItsWorker) {
    auto model = std::make_unique<TavNaModel>();
    ModelWatch watch(*model);
    model->parseFile(bigCapture());
    watch.waitForWorkerProgress();
    model.reset();
    // The worker thread has run to its exit before the model was gone.
    EXPECT_EQ(watch.workers(), 1);
    EXPECT_EQ(watch.events().back(), "finished " + bigCapture());
}

} // namespace
