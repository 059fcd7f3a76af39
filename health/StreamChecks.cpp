#include "health/StreamChecks.h"

#include "health/FrameWalk.h"
#include "health/GooseChecks.h"
#include "health/LanPairing.h"
#include "health/SvChecks.h"
#include "stream/StreamClocks.h"

namespace TavHealth {

using namespace TavIec61850Parser;

namespace {

// The part both kinds share: reading, LAN copies, counting, the event log.
template <class Checks>
StreamHealth run(const PackageFiles& files, Checks& checks, EventLog& log,
                 const std::atomic<bool>* cancel) {
    StreamHealth health;
    LanPairing pairing(log);
    health.unreadableFrames = walkFrames(
        files,
        [&](const Timest& time, const EthernetFrame& eth) {
            const auto frame = checks.decode(eth);
            ++health.frames;
            if (!pairing.isCopy(lanOf(eth), checks.key(frame), time))
                checks.use(time, frame, health);
        },
        cancel);
    pairing.finish(health);
    checks.finish(health);
    log.moveInto(health);
    return health;
}

} // namespace

StreamHealth checkStream(const Sv& stream, const TavStream::SamplingClock* clock,
                         const std::atomic<bool>* cancel, const SvNominal& nominal) {
    EventLog log;
    const TavStream::SamplingClock own =
        clock ? TavStream::SamplingClock{} : TavStream::surveyStream(stream, cancel);
    SvChecks checks(stream.svId, clock ? *clock : own, log, nominal);
    return run(stream.files, checks, log, cancel);
}

StreamHealth checkStream(const Goose& stream, const std::atomic<bool>* cancel) {
    EventLog log;
    GooseChecks checks(log);
    return run(stream.files, checks, log, cancel);
}

} // namespace TavHealth
