// Checks each stream of a 1 GB capture of eight SV publishers, one after
// another as the diagnostics panel does, and prints the time per stream.
#include "bench/BenchCapture.h"
#include "health/HealthCounts.h"
#include "health/StreamChecks.h"
#include "platform/parser/PcapParser.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <vector>

int main() {
    writeCaptureOnce(TAVNA_BENCH_CAPTURE, "--sv 8 --duration 200");
    TavIec61850Parser::Db db;
    std::atomic<bool> cancel{false};
    TavIec61850Parser::PcapParser::parseFile(TAVNA_BENCH_CAPTURE, db, {}, cancel, [](double) {});
    std::vector<double> seconds;
    for (const auto& sv : db.svProto.svs) {
        const auto start = std::chrono::steady_clock::now();
        const TavHealth::StreamHealth health = TavHealth::checkStream(sv);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        seconds.push_back(took.count());
        std::printf("%s: %llu frames in %.3f s (%s)\n", sv.svId.c_str(),
                    static_cast<unsigned long long>(health.frames), took.count(),
                    TavHealth::remarksText(health).empty() ? "no remarks" : "remarks");
    }
    std::sort(seconds.begin(), seconds.end());
    if (!seconds.empty())
        std::printf("median %.3f s, worst %.3f s per stream\n", seconds[seconds.size() / 2],
                    seconds.back());
    return 0;
}
