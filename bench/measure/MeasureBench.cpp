// Measurement time on realistic captures: eight channels of one stream over
// ten cycles and over one second, on a generated capture of eight merging
// units (two ASDUs a frame, handed over in bursts, rich in harmonics, noisy)
// and on the real merging unit's recording; then every stream of the 1 GB
// capture over its whole length.
#include "bench/BenchCapture.h"
#include "measure/Measure.h"
#include "model/MeasureChannels.h"
#include "platform/parser/PcapParser.h"
#include "stream/StreamClocks.h"
#include "stream/WindowFrames.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <memory>

namespace {

struct Loaded {
    TavIec61850Parser::Db db;
    std::unique_ptr<TavStream::StreamClocks> clocks;
    std::vector<TavMeasure::StreamInput> inputs;
    std::int64_t firstNs = 0;
    std::int64_t lastNs = 0;

    explicit Loaded(const char* path) {
        std::atomic<bool> cancel{false};
        TavIec61850Parser::PcapParser::parseFile(path, db, {}, cancel, [](double) {});
        const auto streams = TavStream::svStreams(db);
        clocks = std::make_unique<TavStream::StreamClocks>(streams);
        clocks->surveyAll(streams);
        for (const auto* stream : streams) {
            inputs.push_back({stream, &clocks->of(*stream), TavNA::measureChannels(*stream)});
            for (const auto& file : stream->files) {
                const auto begin = TavStream::toNanoseconds(file.getBeginTime());
                const auto end = TavStream::toNanoseconds(file.getEndTime());
                firstNs = firstNs == 0 ? begin : std::min(firstNs, begin);
                lastNs = std::max(lastNs, end);
            }
        }
    }
};

Loaded& realistic() {
    static Loaded loaded = [] {
        writeCaptureOnce(TAVNA_BENCH_REALISTIC,
                         "--sv 8 --asdus 2 --duration 10 --bursts 3 --noise 0.001 --harmonic 3:7 "
                         "--harmonic 5:5 --harmonic 11:5 --frequency 49.93");
        return Loaded(TAVNA_BENCH_REALISTIC);
    }();
    return loaded;
}

Loaded& real() {
    static Loaded loaded(TAVNA_SHARED_CAPTURE);
    return loaded;
}

void measureSpan(benchmark::State& state, Loaded& loaded) {
    const std::int64_t span = state.range(0) * 1'000'000; // ms
    const std::int64_t from = loaded.firstNs + 1'000'000'000;
    std::size_t cycles = 0;
    for (auto _ : state)
        cycles = TavMeasure::measure({loaded.inputs.front()}, from, from + span).front().cycles;
    state.counters["cycles"] = static_cast<double>(cycles);
}

void BM_EightChannelsGenerated(benchmark::State& state) {
    measureSpan(state, realistic());
}
void BM_EightChannelsRealCapture(benchmark::State& state) {
    measureSpan(state, real());
}

BENCHMARK(BM_EightChannelsGenerated)
    ->ArgName("ms")
    ->Arg(200)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(BM_EightChannelsRealCapture)
    ->ArgName("ms")
    ->Arg(200)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);

void BM_EveryStreamWhole1GB(benchmark::State& state) {
    static Loaded loaded = [] {
        writeCaptureOnce(TAVNA_BENCH_GIGABYTE, "--sv 8 --duration 200");
        return Loaded(TAVNA_BENCH_GIGABYTE);
    }();
    for (auto _ : state)
        for (const auto& input : loaded.inputs)
            benchmark::DoNotOptimize(TavMeasure::measure({input}, loaded.firstNs, loaded.lastNs));
}
BENCHMARK(BM_EveryStreamWhole1GB)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

} // namespace

BENCHMARK_MAIN();
