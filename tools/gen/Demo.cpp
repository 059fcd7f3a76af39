#include "tools/gen/Demo.h"

#include "tools/gen/StreamNaming.h"

#include <filesystem>

namespace TavGen {

namespace {
constexpr double kFaultAt = 0.5;
constexpr double kTripAt = kFaultAt + 0.020;
constexpr double kBreakerOpensAt = kTripAt + 0.060;
constexpr std::uint64_t kNsPerSecond = 1'000'000'000;
constexpr std::uint8_t kPositionOn = 2;  // double point "10": closed
constexpr std::uint8_t kPositionOff = 1; // double point "01": open

std::uint64_t ns(double seconds) {
    return static_cast<std::uint64_t>(seconds * 1e9 + 0.5);
}

SvStreamConfig mergingUnit(unsigned bay) {
    SvStreamConfig c = namedSvStream(bay - 1);
    c.svId = "Bay" + std::to_string(bay) + "MU01";
    c.datSet = "BAY" + std::to_string(bay) + "MU01/LLN0$PhsMeas1";
    c.signal.currentPeak = 400;
    c.signal.voltagePeak = 9000;
    c.tagging.vlanId = 10;
    return c;
}

GooseStreamConfig bayGoose(unsigned n, const std::string& device, const std::string& name,
                           GooseEntry entry, std::uint8_t before, std::uint8_t after, double at) {
    GooseStreamConfig c = namedGooseStream(n);
    c.gocbRef = device + "/LLN0$GO$" + name;
    c.goId = device + name;
    c.datSet = device + "/LLN0$DS" + name;
    c.tagging.vlanId = 10;
    c.entries = {entry};
    c.initial = {before};
    c.changes = {{ns(at), {after}}};
    return c;
}
} // namespace

Scenario demoScenario(Container container) {
    Scenario s;
    s.container = container;
    s.durationNs = kNsPerSecond;
    SvStreamConfig bay1 = mergingUnit(1);
    bay1.signal.fault = PhaseAFault{kFaultAt, kBreakerOpensAt, 10.0, 0.3};
    s.sv = {bay1, mergingUnit(2)};
    s.goose = {
        bayGoose(0, "BAY1PROT", "Trip", GooseEntry::Boolean, 0, 1, kTripAt),
        bayGoose(1, "BAY1CTRL", "Position", GooseEntry::DoublePoint, kPositionOn, kPositionOff,
                 kBreakerOpensAt),
    };
    return s;
}

void writeDemo(const std::string& dir) {
    std::filesystem::create_directories(dir);
    const std::filesystem::path base(dir);
    writeCapture((base / "demo_substation.pcap").string(), demoScenario(Container::Pcap));
    writeCapture((base / "demo_substation.pcapng").string(), demoScenario(Container::Pcapng));
}

} // namespace TavGen
