// tavna-bench-scl: reading a substation configuration of about 50 MB (a
// merging-unit device of 256 SV blocks, 256 GOOSE devices of 2000 members
// each), every member expanded through the type templates; five runs.
#include "bench/BenchFigures.h"
#include "scl/SclReader.h"

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

constexpr int kRuns = 5;
constexpr double kTargetMs = 2000;

void writeConfigurationOnce(const std::string& scd) {
    if (std::filesystem::exists(scd))
        return;
    std::printf("writing %s with tavna-gen (once)\n", scd.c_str());
    const std::string capture = scd + ".pcap";
    const std::string command = std::string("'") + TAVNA_GEN_PATH + "' '" + capture +
                                "' --sv 256 --goose 256 --bools 2000 --duration 0.001 --scl '" +
                                scd + ".part' > /dev/null";
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "tavna-gen failed\n");
        std::exit(1);
    }
    std::filesystem::remove(capture);
    std::filesystem::rename(scd + ".part", scd);
}

} // namespace

int main() {
    const std::string scd = TAVNA_BENCH_SCD;
    writeConfigurationOnce(scd);
    std::vector<double> times;
    std::size_t ieds = 0, blocks = 0, members = 0;
    for (int i = 0; i < kRuns; ++i) {
        const auto start = std::chrono::steady_clock::now();
        const TavScl::SclFile f = TavScl::readSclFile(scd);
        times.push_back(msSince(start, std::chrono::steady_clock::now()));
        ieds = f.ieds.size();
        blocks = f.controls.size();
        members = 0;
        for (const auto& c : f.controls)
            members += c.dataSet ? c.dataSet->members.size() : 0;
    }
    std::printf("%.1f MB, %zu IEDs, %zu control blocks, %zu data set members\n",
                static_cast<double>(std::filesystem::file_size(scd)) / 1e6, ieds, blocks, members);
    report("read the SCD, every member resolved", times, kTargetMs);
    return 0;
}
