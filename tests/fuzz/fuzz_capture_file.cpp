// Feeds arbitrary bytes to the file reader as a capture file, then reads every
// stream's first and last frame back by offset, as the oscillograph would.
#include "platform/parser/GooseParser.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/PcapParser.h"
#include "platform/parser/SvParser.h"

#include <cstdio>
#include <string>
#include <unistd.h>

using namespace TavIec61850Parser;

namespace {

std::string inputPath() {
    static const std::string path = "/tmp/tavna-fuzz-capture-" + std::to_string(::getpid());
    return path;
}

template <class Read> void rereadEnds(const PackageFile& f, Read read) {
    for (const Package* p : {&f.packages.front(), &f.packages.back()}) {
        try {
            read(f.path, p->offset);
        } catch (const ParseError& e) {
            // A frame the file reader accepted must read back the same.
            std::fprintf(stderr, "re-read failed: %s\n", e.what());
            __builtin_trap();
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = inputPath();
    if (FILE* f = std::fopen(path.c_str(), "wb")) {
        std::fwrite(data, 1, size, f);
        std::fclose(f);
    } else {
        return 0;
    }
    Db db;
    std::atomic<bool> cancel{false};
    try {
        PcapParser::parseFile(path, db, {}, cancel, [](double) {});
    } catch (const ParseError&) {
    }
    for (const Sv& s : db.svProto.svs)
        for (const PackageFile& f : s.files)
            rereadEnds(f, SvParser::parseASDUFromFile);
    for (const Goose& g : db.gooseProto.gooses)
        for (const PackageFile& f : g.files)
            rereadEnds(f, [](const std::string& p, std::uint64_t o) {
                GooseParser::parseBooleanValues(GooseParser::parseGoosePDUFromFile(p, o).data);
            });
    // Compressed input leaves an inflated copy in the cache folder otherwise.
    PcapParser::forgetFile(path);
    return 0;
}
