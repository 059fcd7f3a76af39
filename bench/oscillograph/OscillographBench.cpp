// A full frame is what the widget does after the data or the window changed:
// geometry, the background layer, compositing and the cursor. A cursor update
// repaints only the damage of the old and new cursor over the cached background.
#include "platform/view/oscillograph/OscillographPainter.h"

#include <benchmark/benchmark.h>
#include <cairomm/surface.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <memory>
#include <vector>

namespace {

using namespace TavView;

constexpr int Width = 1920;
constexpr int Height = 600;
constexpr int AnalogCount = 16;
constexpr int AnalogPoints = 8000;
constexpr int DiscreteCount = 16;
constexpr int DiscreteSteps = 200;
constexpr double Duration = 1.0;

std::uint32_t colorOf(int i) {
    const std::uint32_t phases[] = {0xFF00EAFFu, 0xFF47A043u, 0xFF3539E5u, 0xFF8B7D60u};
    return phases[i % 4];
}

struct Scene {
    std::vector<std::unique_ptr<Tav::Series>> owned;
    std::vector<const Tav::Series*> series;

    Scene() {
        for (int s = 0; s < AnalogCount; ++s) {
            auto serie = std::make_unique<Tav::Series>();
            serie->description = "SV " + std::to_string(s);
            serie->color = colorOf(s);
            serie->gain = 1.0f + 0.1f * static_cast<float>(s);
            serie->points.resize(AnalogPoints);
            for (int i = 0; i < AnalogPoints; ++i) {
                const double t = Duration * i / AnalogPoints;
                const double wave = 1000.0 * std::sin(2.0 * M_PI * 50.0 * t + s * 0.4) +
                                    30.0 * std::sin(2.0 * M_PI * 1250.0 * t);
                serie->points[i] = {static_cast<float>(t), static_cast<float>(wave)};
            }
            series.push_back(serie.get());
            owned.push_back(std::move(serie));
        }
        for (int s = 0; s < DiscreteCount; ++s) {
            auto serie = std::make_unique<Tav::Series>();
            serie->kind = Tav::Series::Discrete;
            serie->description = "GOOSE " + std::to_string(s);
            serie->color = 0xFFE5881Eu;
            serie->ordinal = static_cast<std::uint32_t>(s);
            for (int i = 0; i < DiscreteSteps; ++i) {
                const double t = Duration * i / DiscreteSteps;
                serie->points.push_back({static_cast<float>(t), static_cast<float>((i + s) % 2)});
            }
            series.push_back(serie.get());
            owned.push_back(std::move(serie));
        }
    }
};

struct Screen {
    Cairo::RefPtr<Cairo::ImageSurface> target =
        Cairo::ImageSurface::create(Cairo::FORMAT_RGB24, Width, Height);
    Cairo::RefPtr<Cairo::ImageSurface> background =
        Cairo::ImageSurface::create(Cairo::FORMAT_RGB24, Width, Height);
    Cairo::RefPtr<Cairo::Context> measureContext = Cairo::Context::create(background);
    TextMeasure measure = OscillographPainter::measureWith(measureContext);
    PlotLayout layout;

    void fullFrame(const Scene& scene, double from, double to, double cursorX) {
        PlotLayout::Input in;
        in.width = Width;
        in.height = Height;
        in.from = from;
        in.to = to;
        in.series = &scene.series;
        in.measure = measure;
        layout.compute(in);
        OscillographPainter::paintBackground(Cairo::Context::create(background), layout);
        auto cr = Cairo::Context::create(target);
        cr->set_source(background, 0.0, 0.0);
        cr->paint();
        OscillographPainter::paintCursor(cr, layout, cursorX);
        target->flush();
    }

    void cursorUpdate(double oldX, double newX) {
        auto cr = Cairo::Context::create(target);
        for (double x : {oldX, newX}) {
            for (const Rect& r : OscillographPainter::cursorDamage(layout, x))
                cr->rectangle(r.x, r.y, r.width + 1.0, r.height + 1.0);
        }
        cr->clip();
        cr->set_source(background, 0.0, 0.0);
        cr->paint();
        OscillographPainter::paintCursor(cr, layout, newX);
        target->flush();
    }
};

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

// CPU time of this thread: on a shared machine, wall time also counts the
// turns other processes take.
double threadCpuMs() {
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) * 1e3 + static_cast<double>(ts.tv_nsec) * 1e-6;
}

template <typename Work> void timeFrames(benchmark::State& state, Work work) {
    std::vector<double> wall, cpu;
    int frame = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        const double cpuStart = threadCpuMs();
        work(frame++);
        cpu.push_back(threadCpuMs() - cpuStart);
        const std::chrono::duration<double, std::milli> spent =
            std::chrono::steady_clock::now() - start;
        wall.push_back(spent.count());
    }
    state.counters["median_ms"] = median(wall);
    state.counters["median_cpu_ms"] = median(cpu);
}

void BM_FullFrame(benchmark::State& state) {
    const Scene scene;
    Screen screen;
    timeFrames(state, [&](int frame) {
        // A slightly different window each time, as while dragging.
        const double shift = (frame % 50) * 1e-4;
        screen.fullFrame(scene, shift, shift + Duration * 0.95, 900.0);
    });
}
BENCHMARK(BM_FullFrame)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_CursorUpdate(benchmark::State& state) {
    const Scene scene;
    Screen screen;
    screen.fullFrame(scene, 0.0, Duration, 900.0);
    double x = 900.0;
    timeFrames(state, [&](int frame) {
        const double next = 200.0 + (frame * 7) % 1600;
        screen.cursorUpdate(x, next);
        x = next;
    });
}
BENCHMARK(BM_CursorUpdate)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
