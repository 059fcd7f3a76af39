#include "tools/gen/Scenario.h"

#include "tools/gen/CookedFrame.h"
#include "tools/gen/FaultySource.h"
#include "tools/gen/OtherFrames.h"

#include <memory>
#include <queue>

namespace TavGen {

std::uint64_t writeCapture(const std::string& path, const Scenario& scenario) {
    std::vector<std::unique_ptr<FrameSource>> sources;
    const auto add = [&](std::unique_ptr<FrameSource> source, const std::vector<Fault>& faults,
                         const std::vector<ArrivalDelay>& delays) {
        if (scenario.lanPairs || anyReshaping(faults))
            source = std::make_unique<FaultySource>(std::move(source), faults, scenario.startNs,
                                                    scenario.lanPairs);
        if (scenario.bursts > 1 || !delays.empty())
            source = std::make_unique<ArrivalStamps>(std::move(source), scenario.bursts, delays,
                                                     scenario.startNs);
        sources.push_back(std::move(source));
    };
    for (const auto& sv : scenario.sv)
        add(std::make_unique<SvStream>(sv, scenario.startNs, scenario.durationNs), sv.faults,
            sv.delays);
    for (const auto& goose : scenario.goose)
        add(std::make_unique<GooseStream>(goose, scenario.startNs, scenario.durationNs),
            goose.faults, {});
    if (scenario.otherFrames > 0)
        sources.push_back(std::make_unique<OtherFrames>(scenario.otherFrames, scenario.startNs,
                                                        scenario.durationNs));

    using Next = std::pair<std::uint64_t, std::size_t>; // time, source
    std::priority_queue<Next, std::vector<Next>, std::greater<>> queue;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (!sources[i]->done())
            queue.emplace(sources[i]->timeNs(), i);
    }

    auto writer =
        CaptureWriter::create(path, scenario.container, scenario.bigEndian, scenario.link);
    std::vector<std::uint8_t> linkBuffer;
    std::uint64_t frames = 0;
    while (!queue.empty()) {
        const auto [time, i] = queue.top();
        queue.pop();
        FrameSource& source = *sources[i];
        writer->writeFrame(time, onLinkLayer(scenario.link, source.frame(), linkBuffer));
        ++frames;
        source.advance();
        if (!source.done())
            queue.emplace(source.timeNs(), i);
    }
    writer->close();
    if (scenario.gzip)
        gzipFile(path);
    return frames;
}

} // namespace TavGen
