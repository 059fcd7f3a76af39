// tavna-fuzz-seeds OUTDIR CAPTURE...: writes the first frames of each capture
// as single files, the frame fuzzer's starting corpus.
#include "platform/parser/ContainerReader.h"
#include "platform/parser/MappedFile.h"
#include "platform/parser/ParseError.h"

#include <cstdio>
#include <string>

using namespace TavIec61850Parser;

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s OUTDIR CAPTURE...\n", argv[0]);
        return 2;
    }
    const std::string out = argv[1];
    constexpr int kFramesPerFile = 16;
    int written = 0;
    for (int i = 2; i < argc; ++i) {
        try {
            MappedFile file(argv[i]);
            auto reader = openContainer(argv[i], file.data(), file.size());
            FrameRecord rec;
            for (int n = 0; n < kFramesPerFile && reader->next(rec); ++n) {
                std::string name = out + "/frame-" + std::to_string(i) + "-" + std::to_string(n);
                if (FILE* f = std::fopen(name.c_str(), "wb")) {
                    std::fwrite(rec.data, 1, rec.size, f);
                    std::fclose(f);
                    ++written;
                }
            }
        } catch (const ParseError& e) {
            std::fprintf(stderr, "%s\n", e.what());
        }
    }
    std::printf("%d frame seeds\n", written);
    return 0;
}
