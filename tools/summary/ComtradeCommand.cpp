#include "tools/summary/ComtradeCommand.h"

#include "comtrade/ChannelChoices.h"
#include "comtrade/ComtradeError.h"
#include "comtrade/ComtradeExporter.h"
#include "tools/summary/Arguments.h"
#include "tools/summary/CommandRunner.h"
#include "tools/summary/StreamTable.h"

#include <iostream>
#include <optional>
#include <sstream>

namespace TavInspect {

namespace {

using TavIec61850Parser::Timest;

const char* kUsage = "usage: tavna-inspect --comtrade OUT [--streams K,L,...] [--from S --to S] "
                     "[--rev 1999|2013] [--ascii] [--trigger T] FILE...\n";

struct Options {
    std::string out;
    std::optional<std::vector<std::size_t>> streams;
    std::optional<Timest> from, to, trigger;
    TavComtrade::Revision revision = TavComtrade::Revision::Rev1999;
    TavComtrade::DataFormat format = TavComtrade::DataFormat::Binary;
    std::vector<std::string> files;
};

Options parse(const std::vector<std::string>& args) {
    Options o;
    const auto value = [&](std::size_t& i) -> const std::string& { return optionValue(args, i); };
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--comtrade") {
            o.out = value(i);
        } else if (a == "--streams") {
            std::istringstream list(value(i));
            o.streams.emplace();
            for (std::string k; std::getline(list, k, ',');)
                o.streams->push_back(parseCount(k));
        } else if (a == "--from") {
            o.from = parseSeconds(value(i));
        } else if (a == "--to") {
            o.to = parseSeconds(value(i));
        } else if (a == "--trigger") {
            o.trigger = parseSeconds(value(i));
        } else if (a == "--rev") {
            const std::string& rev = value(i);
            if (rev != "1999" && rev != "2013")
                throw Usage("--rev is 1999 or 2013");
            o.revision =
                rev == "2013" ? TavComtrade::Revision::Rev2013 : TavComtrade::Revision::Rev1999;
        } else if (a == "--ascii") {
            o.format = TavComtrade::DataFormat::Ascii;
        } else if (a.rfind("--", 0) == 0) {
            throw Usage("unknown option " + a);
        } else {
            o.files.push_back(a);
        }
    }
    if (o.out.empty() || o.files.empty())
        throw Usage("an output and at least one capture are needed");
    if (o.from && o.to && *o.to < *o.from)
        throw Usage("--to is before --from");
    return o;
}

TavComtrade::ExportRequest requestFor(const Options& o, const StreamTable& table) {
    TavComtrade::ExportRequest request;
    std::vector<std::size_t> chosen = o.streams.value_or(std::vector<std::size_t>{});
    if (!o.streams)
        for (std::size_t k = 0; k < table.streams().size(); ++k)
            chosen.push_back(k);
    for (const std::size_t k : chosen) {
        if (k >= table.streams().size())
            throw Usage("no stream " + std::to_string(k) + " (there are " +
                        std::to_string(table.streams().size()) + ")");
        const StreamRef& stream = table.streams()[k];
        if (stream.sv) {
            const auto channels = TavComtrade::allChannels(*stream.sv);
            request.analog.insert(request.analog.end(), channels.begin(), channels.end());
        } else {
            const auto channels = TavComtrade::booleanChannels(*stream.goose);
            request.digital.insert(request.digital.end(), channels.begin(), channels.end());
        }
    }
    request.from = o.from;
    request.to = o.to;
    request.trigger = o.trigger;
    request.revision = o.revision;
    request.format = o.format;
    request.stationName = TavComtrade::stationNameOf(o.files);
    request.deviceId = TavComtrade::deviceIdOf(request);
    return request;
}

} // namespace

bool isComtradeCommand(const std::vector<std::string>& args) {
    return namesCommand(args, "--comtrade");
}

int runComtradeCommand(const std::vector<std::string>& args) {
    return runOnCaptures(args, kUsage, parse, [](const Options& options, StreamTable& table) {
        const auto request = requestFor(options, table);
        const auto base = TavComtrade::ComtradeExporter::basePath(options.out);
        const auto result = TavComtrade::ComtradeExporter::write(base, request);
        std::cout << result.cfgPath << ", " << result.datPath << ": " << result.rows << " rows, "
                  << request.analog.size() << " analog, " << request.digital.size()
                  << " digital channels, aligned " << TavComtrade::alignmentName(result.alignment)
                  << '\n';
    });
}

} // namespace TavInspect
