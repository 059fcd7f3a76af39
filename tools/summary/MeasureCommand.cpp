#include "tools/summary/MeasureCommand.h"

#include "measure/Measure.h"
#include "model/MeasureChannels.h"
#include "stream/WindowFrames.h"
#include "tools/summary/Arguments.h"
#include "tools/summary/CommandRunner.h"
#include "tools/summary/MeasureReport.h"
#include "tools/summary/StreamTable.h"

#include <iostream>
#include <optional>

namespace TavInspect {

namespace {

using TavIec61850Parser::Timest;

const char* kUsage = "usage: tavna-inspect --measure [--from S --to S] [--json] FILE...\n";

// Samples are taken before their frames arrive: the whole capture begins a
// little before its first frame.
constexpr std::int64_t kBeforeFirstFrameNs = 100'000'000;

struct Options {
    std::optional<Timest> from, to;
    bool json = false;
    std::vector<std::string> files;
};

Options parse(const std::vector<std::string>& args) {
    Options o;
    const auto value = [&](std::size_t& i) -> const std::string& { return optionValue(args, i); };
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--measure")
            continue;
        if (a == "--from")
            o.from = parseSeconds(value(i));
        else if (a == "--to")
            o.to = parseSeconds(value(i));
        else if (a == "--json")
            o.json = true;
        else if (a.rfind("--", 0) == 0)
            throw Usage("unknown option " + a);
        else
            o.files.push_back(a);
    }
    if (o.files.empty())
        throw Usage("at least one capture is needed");
    if (o.from && o.to && *o.to <= *o.from)
        throw Usage("--to is not after --from");
    return o;
}

std::vector<TavMeasure::StreamMeasurement> measureAll(const Options& o, const StreamTable& table) {
    std::vector<TavMeasure::StreamMeasurement> all;
    for (const StreamRef& stream : table.streams()) {
        if (!stream.sv)
            continue;
        const std::int64_t from =
            o.from ? TavStream::toNanoseconds(*o.from)
                   : TavStream::toNanoseconds(stream.first()) - kBeforeFirstFrameNs;
        const std::int64_t to =
            o.to ? TavStream::toNanoseconds(*o.to) : TavStream::toNanoseconds(stream.last());
        const TavMeasure::StreamInput input{stream.sv, &table.clocks().of(*stream.sv),
                                            TavNA::measureChannels(*stream.sv)};
        auto measured = TavMeasure::measure({input}, from, to);
        if (measured.empty()) {
            measured.emplace_back();
            measured.front().svId = stream.sv->svId;
            measured.front().appId = stream.sv->appId;
        }
        all.push_back(std::move(measured.front()));
    }
    return all;
}

} // namespace

bool isMeasureCommand(const std::vector<std::string>& args) {
    return namesCommand(args, "--measure");
}

int runMeasureCommand(const std::vector<std::string>& args) {
    return runOnCaptures(args, kUsage, parse, [](const Options& options, StreamTable& table) {
        const auto all = measureAll(options, table);
        if (options.json)
            writeMeasureJson(std::cout, all);
        else
            writeMeasureText(std::cout, all);
    });
}

} // namespace TavInspect
