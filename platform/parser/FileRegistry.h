#pragma once

#include "platform/parser/ContainerReader.h"
#include "platform/parser/MappedFile.h"

#include <optional>
#include <string>

namespace TavIec61850Parser {

// Process-wide memory of what each parsed file looked like, so that a frame
// read by offset later can tell that the file has changed under it.
class FileRegistry {
public:
    static void remember(const std::string& path, const FileVersion& version);
    static std::optional<FileVersion> lookup(const std::string& path);
    // The pcapng interfaces' link types, known once the parse has read them.
    static void rememberLinks(const std::string& path, LinkLayout layout);
    static LinkLayout links(const std::string& path);
    // Where a compressed file's frames are read from: its inflated copy.
    static void rememberCopy(const std::string& path, const std::string& copy);
    static std::optional<std::string> copyOf(const std::string& path);
    // Drops everything remembered of the file; the inflated copy it had, if any.
    static std::optional<std::string> forget(const std::string& path);
};

} // namespace TavIec61850Parser
