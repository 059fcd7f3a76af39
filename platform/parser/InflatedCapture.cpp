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
    const std::string copy = FileRegistry::copyOf(path).value_or(copyFor(path, version));
    std::error_code ec;
    if (std::filesystem::exists(copy, ec))
        return copy;
    const MappedFile compressed(path);
    const std::atomic<bool> never{false};
    inflateInto(path, compressed, copyFor(path, version), never, nullptr);
    return copyFor(path, version);
}

void forgetInflated(const std::string& path) {
    if (auto copy = FileRegistry::forget(path))
        TavGzip::GzipCache::remove(*copy);
}

} // namespace TavIec61850Parser
