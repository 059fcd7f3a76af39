#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace TavIec61850Parser {

// Reads one frame again by the offset of its record, touching only the file
// header and that record. Throws ParseError when the file is gone, differs
// from when it was parsed, or holds no frame record at the offset.
class FrameReader {
public:
    // The frame's captured bytes; `buffer` holds them.
    static void read(const std::string& path, std::uint64_t offset,
                     std::vector<std::uint8_t>& buffer);
};

} // namespace TavIec61850Parser
