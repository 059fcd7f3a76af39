#include "platform/parser/FileRegistry.h"

#include <mutex>
#include <unordered_map>

namespace TavIec61850Parser {

namespace {

// Parses run on a worker while frames are read on the interface thread.
struct Registry {
    std::mutex mutex;
    std::unordered_map<std::string, FileVersion> versions;
    std::unordered_map<std::string, LinkLayout> links;
    std::unordered_map<std::string, std::string> copies;
};

Registry& registry() {
    static Registry r;
    return r;
}

} // namespace

void FileRegistry::remember(const std::string& path, const FileVersion& version) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    r.versions[path] = version;
}

std::optional<FileVersion> FileRegistry::lookup(const std::string& path) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    auto it = r.versions.find(path);
    if (it == r.versions.end())
        return std::nullopt;
    return it->second;
}

} // namespace TavIec61850Parser

namespace TavIec61850Parser {

void FileRegistry::rememberLinks(const std::string& path, LinkLayout layout) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    r.links[path] = std::move(layout);
}

LinkLayout FileRegistry::links(const std::string& path) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    auto it = r.links.find(path);
    return it == r.links.end() ? LinkLayout{} : it->second;
}

void FileRegistry::rememberCopy(const std::string& path, const std::string& copy) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    r.copies[path] = copy;
}

std::optional<std::string> FileRegistry::copyOf(const std::string& path) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    auto it = r.copies.find(path);
    if (it == r.copies.end())
        return std::nullopt;
    return it->second;
}

std::optional<std::string> FileRegistry::forget(const std::string& path) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    r.versions.erase(path);
    r.links.erase(path);
    auto it = r.copies.find(path);
    if (it == r.copies.end())
        return std::nullopt;
    std::string copy = std::move(it->second);
    r.copies.erase(it);
    return copy;
}

} // namespace TavIec61850Parser
