#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace TavIec61850Parser {

// Identity of a file's contents as far as the frame parsers can check it.
struct FileVersion {
    std::uint64_t size = 0;
    std::int64_t mtimeNs = 0;
    friend bool operator==(const FileVersion&, const FileVersion&) = default;
};

// A whole capture file mapped read-only. The parse reads it front to back, so
// the kernel is then told to read ahead and drop pages behind; frames read
// again for drawing come in any order.
class MappedFile {
public:
    enum class Access { Sequential, AnyOrder };

    // Throws ParseError naming the file when it cannot be opened or mapped.
    explicit MappedFile(const std::string& path, Access access = Access::Sequential);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    const std::uint8_t* data() const { return data_; }
    std::size_t size() const { return size_; }
    const FileVersion& version() const { return version_; }

private:
    const std::uint8_t* data_ = nullptr;
    std::size_t size_ = 0;
    FileVersion version_;
};

} // namespace TavIec61850Parser
