#include "platform/parser/InflatedCapture.h"

#include "platform/gzip/GzipCache.h"
#include "platform/parser/FileRegistry.h"
#include "platform/parser/ParseError.h"

#include <filesystem>

namespace TavIec61850Parser {

namespace {

std::string copyFor(const std::string& path, const FileVersion& version) {
    return TavGzip::GzipCache::copyPath(path, version.size, version.mtimeNs);
}

bool inflateInto(const std::string& path, const MappedFile& compressed, const std::string& copy,
                 const std::atomic<bool>& cancel, const std::function<void(double)>& progress) {
    try {
        return TavGzip::GzipCache::inflate(compressed.data(), compressed.size(), copy, cancel,
                                           progress);
    } catch (const TavGzip::GzipError& e) {
        throw ParseError(path, e.what());
    } catch (const std::filesystem::filesystem_error& e) {
        throw ParseError(path, e.what());
    }
}

} // namespace

bool isCompressed(const MappedFile& file) {
    return TavGzip::isGzip(file.data(), file.size());
}

std::unique_ptr<MappedFile> mapInflated(const std::string& path, const MappedFile& compressed,
                                        const std::atomic<bool>& cancel,
                                        const std::function<void(double)>& progress) {
    const std::string copy = copyFor(path, compressed.version());
    if (!inflateInto(path, compressed, copy, cancel, progress))
        return nullptr;
    FileRegistry::rememberCopy(path, copy);
    try {
        return std::make_unique<MappedFile>(copy);
    } catch (const ParseError& e) {
        throw ParseError(path, std::string("cannot read the inflated copy: ") + e.what());
    }
}

std::string inflatedCopy(const std::string& path, const FileVersion& version) {
    // Only a capture still open is read again: a closed one's copy went with
    // it, and a copy made now would be one that nothing ever removes.
    const auto remembered = FileRegistry::copyOf(path);
    if (!remembered)
        throw ParseError(path, "the file is no longer open");
    std::error_code ec;
    if (std::filesystem::exists(*remembered, ec))
        return *remembered;
    // The cache folder was cleaned under it: inflated again, and remembered,
    // so that closing the file removes this copy too.
    const std::string copy = copyFor(path, version);
    const MappedFile compressed(path);
    const std::atomic<bool> never{false};
    inflateInto(path, compressed, copy, never, nullptr);
    FileRegistry::rememberCopy(path, copy);
    return copy;
}

void forgetInflated(const std::string& path) {
    if (auto copy = FileRegistry::forget(path))
        TavGzip::GzipCache::remove(*copy);
}

} // namespace TavIec61850Parser
