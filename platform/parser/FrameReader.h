#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
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
    // Several frames of one file with a single check of the file for all of
    // them: `use` gets each frame's place in `offsets` and its bytes, which
    // are valid only during the call. `use` must not read frames itself: the
    // open file is shared per thread.
    static void readEach(const std::string& path, const std::vector<std::uint64_t>& offsets,
                         const std::function<void(std::size_t, std::vector<std::uint8_t>&)>& use);
};

} // namespace TavIec61850Parser
