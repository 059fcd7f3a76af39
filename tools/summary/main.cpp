#include "platform/parser/ParseError.h"
#include "tools/summary/ComtradeCommand.h"
#include "tools/summary/LiveCommand.h"
#include "tools/summary/MeasureCommand.h"
#include "tools/summary/Reports.h"
#include "tools/summary/SclCheck.h"

#include <charconv>
#include <iostream>
#include <memory>

namespace {

// A file was read only in part: the report holds what was read.
constexpr int kReadInPart = 3;

const char* kUsage = "usage: tavna-inspect [--check] [--json | --values K] FILE...\n"
                     "       tavna-inspect --scl SCL [--scl SCL...] [--json | --values K] FILE...\n"
                     "       tavna-inspect --comtrade OUT [--streams K,L,...] [--from S --to S] "
                     "[--rev 1999|2013] [--ascii] [--trigger T] FILE...\n"
                     "       tavna-inspect --measure [--from S --to S] [--json] FILE...\n"
                     "       tavna-inspect --interface IF [--seconds S] [--write OUT.pcapng] "
                     "[--json | --check | --measure | --values K]\n";

struct Options {
    bool json = false;
    bool check = false;
    bool values = false;
    std::size_t valuesStream = 0;
    std::vector<std::string> files;
    std::vector<std::string> scl;
};

bool parseOptions(const std::vector<std::string>& args, Options& o) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--check") {
            o.check = true;
        } else if (a == "--json") {
            o.json = true;
        } else if (a == "--values") {
            if (++i >= args.size())
                return false;
            const std::string& k = args[i];
            const auto [end, ec] = std::from_chars(k.data(), k.data() + k.size(), o.valuesStream);
            if (ec != std::errc() || end != k.data() + k.size())
                return false;
            o.values = true;
        } else if (a == "--scl") {
            if (++i >= args.size())
                return false;
            o.scl.push_back(args[i]);
        } else if (a.rfind("--", 0) == 0) {
            return false;
        } else {
            o.files.push_back(a);
        }
    }
    return !o.files.empty() && !(o.json && o.values) && !(o.check && o.values) &&
           !(o.check && !o.scl.empty());
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    if (const auto failed = TavInspect::captureFromInterface(args))
        return *failed;
    if (TavInspect::isComtradeCommand(args))
        return TavInspect::runComtradeCommand(args);
    if (TavInspect::isMeasureCommand(args))
        return TavInspect::runMeasureCommand(args);
    if (args.size() == 1 && (args[0] == "--help" || args[0] == "-h")) {
        std::cout << kUsage;
        return 0;
    }
    Options options;
    if (!parseOptions(args, options)) {
        std::cerr << kUsage;
        return 2;
    }
    TavInspect::StreamTable table;
    std::unique_ptr<TavInspect::SclCheck> scl;
    try {
        table.load(options.files);
        if (!options.scl.empty())
            scl = std::make_unique<TavInspect::SclCheck>(options.scl, table);
        if (options.check && options.json) {
            TavInspect::writeHealthJson(std::cout, table);
        } else if (options.check) {
            TavInspect::writeHealthText(std::cout, table);
        } else if (options.json) {
            TavInspect::writeJson(std::cout, table, scl.get());
        } else if (options.values) {
            if (options.valuesStream >= table.streams().size()) {
                std::cerr << "tavna-inspect: no stream " << options.valuesStream << " (there are "
                          << table.streams().size() << ")\n";
                return 2;
            }
            const auto& stream = table.streams()[options.valuesStream];
            TavInspect::writeValues(std::cout, stream, table, table.timeDecimals(stream),
                                    scl ? scl->channelNames(options.valuesStream)
                                        : std::vector<std::string>());
        } else {
            TavInspect::writeText(std::cout, table);
            if (scl)
                TavInspect::writeSclText(std::cout, *scl);
        }
    } catch (const std::exception& e) {
        std::cout.flush();
        std::cerr << "tavna-inspect: " << e.what() << '\n';
        return 1;
    }
    std::cout.flush();
    if (scl)
        for (const auto& file : scl->files())
            for (const auto& warning : file.warnings)
                std::cerr << "tavna-inspect: warning: " << warning << '\n';
    for (const auto& warning : table.warnings())
        std::cerr << "tavna-inspect: warning: read in part: " << warning << '\n';
    return table.warnings().empty() ? 0 : kReadInPart;
}
