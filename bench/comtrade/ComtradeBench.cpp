// tavna-bench-comtrade: COMTRADE export of one and of eight SV streams of a
// 20 s capture, against reading the same frames back and decoding every ASDU
// without writing anything; medians of five runs, side by side.
#include "bench/BenchCapture.h"
#include "comtrade/ChannelChoices.h"
#include "comtrade/ComtradeExporter.h"
#include "comtrade/SvCursor.h"
#include "platform/parser/PcapParser.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <vector>

using namespace TavComtrade;

namespace {

constexpr int kRuns = 5;

double medianSeconds(const std::function<void()>& run) {
    std::vector<double> times;
    for (int i = 0; i < kRuns; ++i) {
        const auto start = std::chrono::steady_clock::now();
        run();
        times.push_back(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main() {
    const std::string capture = TAVNA_BENCH_CAPTURE;
    writeCaptureOnce(capture, "--sv 8 --duration 20");
    TavIec61850Parser::Db db;
    TavIec61850Parser::FileStats stats;
    const std::atomic<bool> cancel{false};
    TavIec61850Parser::PcapParser::parseFile(
        capture, db, {}, cancel, [](double) {}, stats);

    std::vector<const TavIec61850Parser::Sv*> streams;
    for (const auto& sv : db.svProto.svs)
        streams.push_back(&sv);
    std::sort(streams.begin(), streams.end(),
              [](const auto* a, const auto* b) { return a->svId < b->svId; });
    const std::size_t frames = streams.front()->packageCount();

    TavStream::StreamClocks clocks(streams);
    const TavStream::SamplingClock& clock = clocks.of(*streams.front());
    const double read = medianSeconds([&] {
        SvCursor cursor(*streams.front(), std::nullopt, std::nullopt, {0, 1, 2, 3, 4, 5, 6, 7},
                        clock);
        SvSample sample;
        while (cursor.next(sample)) {
        }
    });
    const std::string out = std::filesystem::path(capture).parent_path() / "bench-export";
    auto exportOf = [&](std::size_t count) {
        ExportRequest request;
        for (std::size_t s = 0; s < count; ++s) {
            const auto channels = allChannels(*streams[s]);
            request.analog.insert(request.analog.end(), channels.begin(), channels.end());
        }
        return medianSeconds([&] { ComtradeExporter::write(out, request); });
    };
    const double one = exportOf(1);
    const double eight = exportOf(8);
    std::printf("read one stream back, every ASDU decoded:   %.3f s (%.2f M frames/s)\n", read,
                frames / read / 1e6);
    std::printf("export one stream (8 channels, %zu rows): %.3f s, %.2f × the read\n", frames, one,
                one / read);
    std::printf("export eight streams (64 channels):        %.3f s, %.2f × the read of one\n",
                eight, eight / read);
    std::filesystem::remove(out + ".cfg");
    std::filesystem::remove(out + ".dat");
    return 0;
}
