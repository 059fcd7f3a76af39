// tavna-bench-presenter: the cost of one oscillograph redraw with eight SV
// channels ticked and a whole 5 s, 8-stream capture visible at 1920 px; then
// the same over a whole 1 GB, 200 s capture: the exact read of every frame
// and the redraw from the streams' min/max summaries.
#include "bench/BenchCapture.h"
#include "presenter/OscillographPresenter.h"
#include "presenter/PackageListPresenter.h"
#include "tools/session/Display.h"
#include "waveform/SvTrace.h"

#include <benchmark/benchmark.h>
#include <glibmm/main.h>
#include <gtkmm/main.h>
#include <gtkmm/window.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace TavNA;

constexpr int kPlotWidth = 1920;

bool pumpUntil(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!done() && std::chrono::steady_clock::now() < deadline)
        if (!Gtk::Main::iteration(false))
            usleep(1000);
    while (Gtk::Main::events_pending())
        Gtk::Main::iteration(false);
    return done();
}

// The module's panels on a loaded capture, eight channels ticked.
struct Scene {
    TavNaModel model;
    PackageListPresenter list{model.getPackageListModel(), model.getLoad()};
    OscillographPresenter scope{model};
    Gtk::Window window;
    double duration = 0.0;

    explicit Scene(const char* capture) {
        model.getLoad().setPoster([](CurrentLoad::Task task) { Tav::beginUpdateView(task); });
        std::atomic<bool> updated{false};
        sigc::connection c =
            model.getPackageListModel().signalUpdated.connect([&] { updated = true; });
        const auto started = std::chrono::steady_clock::now();
        model.parseFile(capture);
        if (!pumpUntil([&] { return updated.load(); }))
            fail("the capture did not load");
        c.disconnect();
        std::printf(
            "%s loaded in %.2f s\n", capture,
            std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count());

        window.set_default_size(kPlotWidth + 200, 600);
        window.add(scope.getViewObj());
        window.show_all();
        auto& view = scope.getViewObj();
        for (int attempt = 0; attempt < 5 && view.getPixelWidth() != kPlotWidth; ++attempt) {
            pumpUntil([&] { return view.getPixelWidth() > 0; });
            window.resize(window.get_width() + kPlotWidth - view.getPixelWidth(), 600);
            pumpUntil([&] { return view.getPixelWidth() == kPlotWidth; });
        }
        if (view.getPixelWidth() != kPlotWidth)
            fail("the plot is not 1920 px wide");

        for (const auto& stream : list.getSvStreams()) {
            stream->getViewObj()->nameButton().clicked();
            stream->getChannelsPresenter()
                .getEntries()
                .at(0)
                ->getViewObj()
                .checkButton()
                .set_active(true);
        }
        if (scope.getSvSelection().size() != 8)
            fail("eight channels are not ticked");
        duration = model.getOscillographModel().duration;
    }

    [[noreturn]] static void fail(const char* why) {
        std::fprintf(stderr, "%s\n", why);
        std::exit(1);
    }

    // The visible window changed: the presenter redraws before this returns.
    void redraw() { scope.getViewObj().setSeriesRange(0.0, duration); }

    // The first wide redraw asks for every stream's summary; each one built
    // brings a redraw of its own.
    void waitForSummaries() {
        int redraws = 0;
        sigc::connection c =
            scope.getSvSelection().front().first->getSerie().signalPointsChanged.connect(
                [&] { ++redraws; });
        redraw();
        const int before = redraws;
        if (!pumpUntil([&] { return redraws >= before + 8; }))
            fail("the summaries were not built");
        c.disconnect();
    }

    std::size_t points() const {
        std::size_t n = 0;
        for (const auto& [channel, group] : scope.getSvSelection())
            n += channel->getSerie().points.size();
        return n;
    }
};

Scene* scene = nullptr;
Scene* wholeGigabyte = nullptr;

void BM_RedrawEightSvChannels(benchmark::State& state) {
    for (auto _ : state)
        scene->redraw();
    state.counters["points"] = static_cast<double>(scene->points());
}
BENCHMARK(BM_RedrawEightSvChannels)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);

// The exact read a redraw makes while no summary is built: every frame of
// the eight streams.
void BM_ReadEightSvChannelsWhole1GB(benchmark::State& state) {
    auto& model = wholeGigabyte->model;
    const auto& range = model.getOscillographModel();
    const auto stamp = [](double s) { return static_cast<std::int64_t>(std::llround(s * 1e9)); };
    const TavWaveform::TraceWindow window{stamp(range.start), stamp(range.end), kPlotWidth};
    std::size_t points = 0;
    for (auto _ : state) {
        points = 0;
        for (const auto& stream : model.getDb().svProto.svs) {
            TavWaveform::ReadFailures failure;
            points +=
                TavWaveform::SvTrace::build(stream, {0}, window, failure, model.getClocks().get())
                    .channels[0]
                    .size();
        }
    }
    state.counters["points"] = static_cast<double>(points);
}
BENCHMARK(BM_ReadEightSvChannelsWhole1GB)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

// What each load adds to the parse: the sampling clocks of the eight streams,
// one pass over every frame's counters, over every core.
void BM_SurveyClocksWhole1GB(benchmark::State& state) {
    const auto streams = TavStream::svStreams(wholeGigabyte->model.getDb());
    for (auto _ : state) {
        TavStream::StreamClocks clocks;
        clocks.surveyAll(streams);
    }
}
BENCHMARK(BM_SurveyClocksWhole1GB)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

// A redraw once the streams' min/max summaries are built.
void BM_RedrawEightSvChannelsWhole1GB(benchmark::State& state) {
    for (auto _ : state)
        wholeGigabyte->redraw();
    state.counters["points"] = static_cast<double>(wholeGigabyte->points());
}
BENCHMARK(BM_RedrawEightSvChannelsWhole1GB)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);

// Loads the scene and waits for its summaries, saying how long they took.
void settle(Scene& scene, const char* what) {
    const auto started = std::chrono::steady_clock::now();
    scene.waitForSummaries();
    std::printf("summaries of 8 streams of the %s capture built in %.1f s\n", what,
                std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count());
}

} // namespace

int main(int argc, char** argv) {
    TavSession::ensureDisplay(argc, argv, "2400x1200x24");
    writeCaptureOnce(TAVNA_BENCH_CAPTURE, "--sv 8 --duration 5");
    writeCaptureOnce(TAVNA_BENCH_GIGABYTE, "--sv 8 --duration 200");
    // Ten gigabytes only when asked for: writing and loading them takes minutes.
    const bool tenGigabytes = std::getenv("TAVNA_BENCH_10GB") != nullptr;
    if (tenGigabytes)
        writeCaptureOnce(TAVNA_BENCH_TEN_GIGABYTES, "--sv 8 --duration 2000");
    benchmark::Initialize(&argc, argv);
    Gtk::Main kit(argc, argv);
    Scene loaded(TAVNA_BENCH_CAPTURE);
    scene = &loaded;
    Scene gigabyte(TAVNA_BENCH_GIGABYTE);
    wholeGigabyte = &gigabyte;
    settle(gigabyte, "1 GB");
    std::unique_ptr<Scene> ten;
    if (tenGigabytes) {
        ten = std::make_unique<Scene>(TAVNA_BENCH_TEN_GIGABYTES);
        settle(*ten, "10 GB");
        benchmark::RegisterBenchmark("BM_RedrawEightSvChannelsWhole10GB",
                                     [&](benchmark::State& state) {
                                         for (auto _ : state)
                                             ten->redraw();
                                         state.counters["points"] =
                                             static_cast<double>(ten->points());
                                     })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(5)
            ->Repetitions(9)
            ->ReportAggregatesOnly(true);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
