// Curves drawn from ticked channels: points re-read from the capture files,
// every sample or a min/max envelope per column, GOOSE steps completed to the
// window's edges.
#include "presenter/OscillographPresenter.h"
#include "platform/common/Log.h"
#include "presenter/PackageListPresenter.h"
#include "tests/presenter/streams/ScopeFixture.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace {

using namespace TavNA;
using TavTest::checkBox;
using TavTest::generated;
using TavTest::OscillographDrawing;
using TavTest::timeOf;

constexpr double captureStart = 1700000000.0;

// The generator's first current: 100 A peak at 50 Hz in mA, 4000 samples a second.
float rawCurrentA(long n) {
    return static_cast<float>(
        std::lround(100.0 * 1000.0 * std::sin(2.0 * M_PI * 50.0 * n / 4000.0)));
}

const std::string& svCapture() {
    static const std::string path = generated("sv1-3s", {"--sv", "1", "--duration", "3"});
    return path;
}

const std::string& gooseCapture() {
    static const std::string path = generated(
        "goose1-change1", {"--goose", "1", "--bools", "2", "--duration", "3", "--change", "1"});
    return path;
}

TEST_F(OscillographDrawing, EverySampleWhileTheyFitElseAnEnvelopeOfRealSamples) {
    loaded.open(svCapture());
    auto& range = loaded.model.getOscillographModel();
    EXPECT_DOUBLE_EQ(range.start, captureStart);
    EXPECT_NEAR(range.duration, 11999 / 4000.0, 1e-6);

    SvChannel& ia = tick(*list.getSvStreams().at(0), 0);
    ASSERT_EQ(scope.getSvSelection().size(), 1u);
    const float ratio = ia.getTransformRatio();
    ASSERT_NE(ratio, 0.0f);

    // The first 100 ms, under the budget, every frame drawn. The frame at
    // 0.1 s itself falls out: the window's end, start + 0.1 in double,
    // truncates to 99 999 904 ns.
    const Tav::Series& serie = ia.getSerie();
    const auto& points = serie.points;
    ASSERT_EQ(points.size(), 400u);
    EXPECT_FALSE(serie.envelope);
    for (long n : {0L, 1L, 17L, 399L}) {
        EXPECT_NEAR(timeOf(serie, n), n / 4000.0, 1e-6) << n;
        EXPECT_FLOAT_EQ(points[n].y, rawCurrentA(n) * ratio) << n;
    }

    // 10 000 samples, and 3999, at 1000 px: more than two a column, so each
    // column gives its lowest and highest sample, each at its own instant,
    // in time order.
    for (const auto& [from, to] : {std::pair{0.0, 2.4998}, std::pair{1.0, 1.0 + 3998 / 4000.0}}) {
        showRange(from, to);
        EXPECT_TRUE(serie.envelope);
        ASSERT_GT(points.size(), 1000u);
        ASSERT_LE(points.size(), 2000u);
        for (std::size_t i = 0; i < points.size(); ++i) {
            const double t = timeOf(serie, i);
            const long n = std::lround(t * 4000.0);
            ASSERT_NEAR(t, n / 4000.0, 1e-6) << i;
            ASSERT_FLOAT_EQ(points[i].y, rawCurrentA(n) * ratio) << i;
            if (i > 0) {
                ASSERT_LT(points[i - 1].x, points[i].x) << i;
            }
        }
    }

    // A narrower plot is taken up only at the next redraw.
    const std::size_t wide = points.size();
    setPlotWidth(500);
    EXPECT_EQ(points.size(), wide);
    showRange(0.0, 2.4998);
    EXPECT_LE(points.size(), 1000u);

    // Unticking drops the curve without a redraw.
    checkBox(*list.getSvStreams().at(0), 0).set_active(false);
    EXPECT_TRUE(scope.getSvSelection().empty());
    EXPECT_TRUE(points.empty());
    EXPECT_FALSE(scope.getViewObj().isActive());
}

// The time of every frame of the first GOOSE stream, relative to the start.
std::vector<double> gooseTimes(TavNaModel& model) {
    std::vector<double> times;
    for (const auto& record : model.getDb().gooseProto.gooses)
        for (const auto& file : record.files)
            for (const auto& p : file.packages)
                times.push_back(p.time.toSeconds() - captureStart);
    return times;
}

TEST_F(OscillographDrawing, GooseStepReachesBothEdges) {
    loaded.open(gooseCapture());
    GooseChannel& first = tick(*list.getGooseStreams().at(0), 0);
    const auto& points = first.getSerie().points;

    // Across the change at 1 s: the state before the window opens the curve.
    const Tav::Series& serie = first.getSerie();
    const auto [from, to] = showRange(0.9, 1.1);
    ASSERT_GE(points.size(), 3u);
    EXPECT_NEAR(timeOf(serie, 0), from, 1e-6);
    EXPECT_EQ(points.front().y, 0.0f);
    EXPECT_NEAR(timeOf(serie, points.size() - 1), to, 1e-6);
    EXPECT_EQ(points.back().y, 1.0f);
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        EXPECT_GE(timeOf(serie, i), from - 1e-6);
        EXPECT_LE(timeOf(serie, i), to + 1e-6);
        EXPECT_EQ(points[i].y, timeOf(serie, i) >= 1.0 - 1e-6 ? 1.0f : 0.0f) << timeOf(serie, i);
    }

    // A window between two retransmissions after the change: a flat line.
    const auto times = gooseTimes(loaded.model);
    std::size_t gap = 0;
    while (gap + 1 < times.size() && !(times[gap] > 1.0 && times[gap + 1] - times[gap] > 0.2))
        ++gap;
    ASSERT_LT(gap + 1, times.size());
    const auto [quietFrom, quietTo] = showRange(times[gap] + 0.05, times[gap + 1] - 0.05);
    ASSERT_EQ(points.size(), 2u);
    EXPECT_NEAR(timeOf(serie, 0), quietFrom, 1e-6);
    EXPECT_NEAR(timeOf(serie, 1), quietTo, 1e-6);
    EXPECT_EQ(points[0].y, 1.0f);
    EXPECT_EQ(points[1].y, 1.0f);
}

TEST_F(OscillographDrawing, RemovingAFileTakesItsChannelsOut) {
    loaded.open(svCapture());
    loaded.open(gooseCapture());
    // Each update adds a fresh entry per stream; the last ones are on show.
    tick(*list.getSvStreams().back(), 2);
    tick(*list.getGooseStreams().back(), 1);
    ASSERT_EQ(scope.getSvSelection().size(), 1u);
    ASSERT_TRUE(scope.getViewObj().isActive());

    loaded.model.getFileManagerModel().remove(svCapture());
    TavTest::pumpPending();
    EXPECT_TRUE(scope.getSvSelection().empty());
    EXPECT_FALSE(scope.getViewObj().isActive());
    EXPECT_TRUE(loaded.model.getDb().svProto.svs.empty());
    // The range now covers the GOOSE file alone.
    EXPECT_NEAR(loaded.model.getOscillographModel().duration,
                gooseTimes(loaded.model).back() - gooseTimes(loaded.model).front(), 1e-6);
}

std::size_t countLines(const std::string& path, const std::string& needle) {
    const auto lines = TavTest::readLines(path);
    return std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(needle) != std::string::npos;
    });
}

// The user is told once per file and cause, however often the window moves.
TEST_F(OscillographDrawing, AVanishedFileDrawsNothingAndIsToldOnce) {
    const std::string copy = TavTest::tempDir() + "/vanishing.pcap";
    std::filesystem::copy_file(svCapture(), copy,
                               std::filesystem::copy_options::overwrite_existing);
    loaded.open(copy);
    SvChannel& ia = tick(*list.getSvStreams().at(0), 0);
    ASSERT_FALSE(ia.getSerie().points.empty());

    std::vector<std::pair<unsigned short, std::string>> told;
    loaded.model.signalMessage.connect(
        [&](unsigned short code, const std::string& text) { told.emplace_back(code, text); });
    const std::string log = TavTest::tempDir() + "/vanishing.log";
    TavLog::Log::setFilePath(log);
    TavLog::Log::setEcho(false);
    std::filesystem::remove(copy);
    showRange(0.0, 2.0);
    showRange(0.5, 1.0);
    TavLog::Log::setFilePath("");
    TavLog::Log::setEcho(true);

    EXPECT_TRUE(ia.getSerie().points.empty());
    EXPECT_EQ(countLines(log, "vanishing.pcap"), 1u);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].second, "Кадры файла " + copy +
                                  " не читаются для осциллограммы: файла больше нет. Откройте "
                                  "файл заново.");
}

// Starts `sh -c script` with `args` as $1...; returns its process id.
pid_t spawnShell(const std::string& script, std::vector<std::string> args) {
    args.insert(args.begin(), {"sh", "-c", script, "sh"});
    std::vector<char*> argv;
    for (auto& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_t pid = -1;
    return posix_spawnp(&pid, "sh", nullptr, nullptr, argv.data(), environ) == 0 ? pid : -1;
}

// Another program cuts the file short and writes it again while the window
// redraws. Each rewrite puts the old time back, so the reader keeps taking
// the file for the one it parsed and reads it while it is short: the window
// must come through, tell the change, and draw again once the file is whole.
TEST_F(OscillographDrawing, AFileCutShortUnderTheRedrawIsToldAsChanged) {
    const std::string original = TavTest::tempDir() + "/rewritten-original.pcap";
    const std::string copy = TavTest::tempDir() + "/rewritten.pcap";
    for (const auto& to : {original, copy})
        std::filesystem::copy_file(svCapture(), to,
                                   std::filesystem::copy_options::overwrite_existing);
    std::filesystem::last_write_time(copy, std::filesystem::last_write_time(original));
    loaded.open(copy);
    SvChannel& ia = tick(*list.getSvStreams().at(0), 0);
    ASSERT_FALSE(ia.getSerie().points.empty());
    std::vector<std::string> told;
    loaded.model.signalMessage.connect(
        [&](unsigned short, const std::string& text) { told.push_back(text); });

    // About three seconds of rewrites, paced so as not to take a core from the
    // tests that run beside this one.
    const pid_t writer =
        spawnShell("i=0; while [ $i -lt 200 ]; do : > \"$1\"; cat \"$2\" > \"$1\"; "
                   "touch -r \"$2\" \"$1\"; sleep 0.01; i=$((i + 1)); done",
                   {copy, original});
    ASSERT_GT(writer, 0);
    int status = 0, redraws = 0;
    while (::waitpid(writer, &status, WNOHANG) == 0) {
        const double from = (redraws++ % 20) * 0.1;
        showRange(from, from + 0.5);
        TavTest::pumpPending();
    }
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);

    ASSERT_FALSE(told.empty()) << redraws << " redraws";
    for (const auto& text : told)
        EXPECT_EQ(text, "Кадры файла " + copy +
                            " не читаются для осциллограммы: файл изменился после открытия. "
                            "Откройте файл заново.");
    showRange(1.0, 1.5);
    EXPECT_FALSE(ia.getSerie().points.empty());
}

TEST(OscillographUnshown, NoColumnsReadNothing) {
    const std::string copy = TavTest::tempDir() + "/unshown.pcap";
    std::filesystem::copy_file(svCapture(), copy,
                               std::filesystem::copy_options::overwrite_existing);
    TavTest::LoadedModel loaded;
    PackageListPresenter list(loaded.model.getPackageListModel(), loaded.model.getLoad());
    OscillographPresenter scope(loaded.model);
    loaded.open(copy);
    ASSERT_EQ(scope.getViewObj().getPixelWidth(), 0);

    auto& stream = *list.getSvStreams().at(0);
    stream.getViewObj()->nameButton().clicked();

    // Were anything read, the missing file would show in the log.
    const std::string log = TavTest::tempDir() + "/unshown.log";
    TavLog::Log::setFilePath(log);
    std::filesystem::remove(copy);
    checkBox(stream, 0).set_active(true);
    TavLog::Log::setFilePath("");

    EXPECT_EQ(scope.getSvSelection().size(), 1u);
    EXPECT_TRUE(stream.getModel().getChannels().getItems()[0]->getSerie().points.empty());
    EXPECT_EQ(countLines(log, "unshown.pcap"), 0u);
}

} // namespace
