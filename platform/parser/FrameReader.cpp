#include "platform/parser/FrameReader.h"

#include "platform/gzip/GzipCache.h"
#include "platform/parser/CookedLinkLayer.h"
#include "platform/parser/FileRegistry.h"
#include "platform/parser/GuardedCopy.h"
#include "platform/parser/InflatedCapture.h"
#include "platform/parser/MappedFile.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/PcapReader.h"
#include "platform/parser/PcapngReader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace TavIec61850Parser {

namespace {

const char* const kChanged = "the file has changed since it was parsed";

// Drawing reads thousands of frames of one file in a row; keeping that file
// mapped per thread spares an open, a header read and a system call per
// frame. The path is still stat'ed for every batch, so a replaced or deleted
// file is noticed. Another program may still cut the file short in the
// middle of a batch: every byte leaves the mapping through a guarded copy.
struct OpenCapture {
    std::string path;
    dev_t device = 0;
    ino_t inode = 0;
    FileVersion version; // a file rewritten in place keeps its inode
    int fd = -1;
    std::unique_ptr<MappedFile> map;
    std::optional<PcapHeader> pcap; // empty for pcapng
    LinkLayout links;               // pcapng only
    std::uint64_t dataSize = 0;     // of the file, or of a compressed file's inflated copy
    std::uint8_t head[kPcapFileHeaderSize] = {};
    std::size_t headSize = 0;

    ~OpenCapture() { close(); }
    void close() {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
        map.reset();
        path.clear();
    }

    // `n` bytes at `at` copied to `to`; fewer when the mapping ends first.
    std::size_t bytesAt(std::uint64_t at, std::size_t n, std::uint8_t* to) const {
        if (at >= map->size())
            return 0;
        n = static_cast<std::size_t>(std::min<std::uint64_t>(n, map->size() - at));
        if (!guardedCopy(to, map->data() + at, n))
            throw ParseError(path, kChanged);
        return n;
    }
};

[[noreturn]] void noFrame(const std::string& path, std::uint64_t offset) {
    throw ParseError(path, "no frame record at byte " + std::to_string(offset));
}

void readExactly(const OpenCapture& f, void* to, std::size_t n, std::uint64_t at) {
    if (f.bytesAt(at, n, static_cast<std::uint8_t*>(to)) != n)
        noFrame(f.path, at);
}

// Opens the bytes the frames are read from: the file, or the inflated copy of
// a compressed one. The header read tells which.
void openFrames(OpenCapture& f, const std::string& from) {
    if (f.fd >= 0)
        ::close(f.fd);
    f.fd = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (f.fd < 0)
        throw ParseError(f.path, std::string("cannot open: ") + std::strerror(errno));
    struct stat st {};
    if (::fstat(f.fd, &st) != 0)
        throw ParseError(f.path, std::string("cannot read: ") + std::strerror(errno));
    f.dataSize = static_cast<std::uint64_t>(st.st_size);
    ssize_t got = ::pread(f.fd, f.head, sizeof f.head, 0);
    f.headSize = got < 0 ? 0 : static_cast<std::size_t>(got);
}

OpenCapture& openCapture(const std::string& path, const struct stat& st,
                         const FileVersion& version) {
    thread_local OpenCapture f;
    if (f.fd >= 0 && f.path == path && f.device == st.st_dev && f.inode == st.st_ino &&
        f.version == version)
        return f;
    f.close();
    f.path = path;
    try {
        std::string from = path;
        openFrames(f, from);
        if (TavGzip::isGzip(f.head, f.headSize)) {
            from = inflatedCopy(path, version);
            openFrames(f, from);
        }
        f.map = std::make_unique<MappedFile>(from, MappedFile::Access::AnyOrder);
    } catch (...) {
        f.close();
        throw;
    }
    f.device = st.st_dev;
    f.inode = st.st_ino;
    f.version = version;
    f.links = FileRegistry::links(path);
    f.pcap = f.headSize == sizeof f.head ? readPcapHeader(f.head, sizeof f.head) : std::nullopt;
    if (!f.pcap && (f.headSize < 4 || ByteReader::load32(f.head, false) != kBlockSectionHeader)) {
        f.close();
        throw ParseError(path, "not a pcap or pcapng file");
    }
    return f;
}

// A cooked frame is handed out as the Ethernet frame it stands for, so that
// every reader of frames decodes one link layer only.
void asEthernet(const OpenCapture& f, std::uint32_t linkType, std::uint64_t offset,
                std::vector<std::uint8_t>& buffer) {
    if (!isCookedLinkType(linkType))
        return;
    thread_local std::vector<std::uint8_t> rewritten;
    if (!cookedToEthernet(linkType, buffer.data(), buffer.size(), rewritten))
        noFrame(f.path, offset);
    buffer.swap(rewritten);
}

void readPcapRecord(const OpenCapture& f, std::uint64_t offset, std::uint64_t fileSize,
                    std::vector<std::uint8_t>& buffer) {
    if (offset < kPcapFileHeaderSize || fileSize - offset < kPcapRecordHeaderSize)
        noFrame(f.path, offset);
    std::uint8_t head[kPcapRecordHeaderSize];
    readExactly(f, head, sizeof head, offset);
    const bool big = f.pcap->bigEndian;
    std::uint32_t captured = ByteReader::load32(head + 8, big);
    std::uint32_t original = ByteReader::load32(head + 12, big);
    // Bytes from the middle of a frame rarely pass for a record header, and
    // the frame decoders check the rest.
    if (!plausibleRecord(captured, original) ||
        captured > fileSize - offset - kPcapRecordHeaderSize)
        noFrame(f.path, offset);
    buffer.resize(captured);
    readExactly(f, buffer.data(), captured, offset + kPcapRecordHeaderSize);
    asEthernet(f, f.pcap->linkType, offset, buffer);
}

void readPcapngBlock(const OpenCapture& f, std::uint64_t offset, std::uint64_t fileSize,
                     std::vector<std::uint8_t>& buffer) {
    constexpr std::size_t kMaxBlock = 16 * 1024 * 1024;
    if (offset % 4 != 0 || fileSize - offset < 12)
        noFrame(f.path, offset);
    std::uint8_t head[8];
    readExactly(f, head, sizeof head, offset);
    std::optional<bool> big = packetBlockIsBigEndian(head);
    if (!big)
        noFrame(f.path, offset);
    std::uint32_t type = ByteReader::load32(head, *big);
    std::uint32_t length = ByteReader::load32(head + 4, *big);
    if (length < 16 || length % 4 != 0 || length > kMaxBlock || length > fileSize - offset)
        noFrame(f.path, offset);
    std::vector<std::uint8_t> block(length);
    readExactly(f, block.data(), length, offset);
    if (ByteReader::load32(block.data() + length - 4, *big) != length)
        noFrame(f.path, offset);
    try {
        PacketBlockFrame frame = packetBlockFrame(block.data(), length, type, *big);
        buffer.assign(frame.data, frame.data + frame.size);
        asEthernet(f, linkTypeAt(f.links, offset, frame.interfaceId), offset, buffer);
    } catch (const MalformedFrame&) {
        noFrame(f.path, offset);
    }
}

} // namespace

namespace {

struct Seen {
    struct stat st {};
    FileVersion version;
};

Seen seen(const std::string& path) {
    Seen s;
    if (::stat(path.c_str(), &s.st) != 0)
        throw ParseError(path, "the file is gone");
    s.version = {static_cast<std::uint64_t>(s.st.st_size),
                 s.st.st_mtim.tv_sec * 1'000'000'000LL + s.st.st_mtim.tv_nsec};
    return s;
}

// The file as it is now, after making sure it is still the one that was parsed.
Seen seenUnchanged(const std::string& path) {
    const Seen now = seen(path);
    if (auto parsed = FileRegistry::lookup(path); parsed && !(*parsed == now.version))
        throw ParseError(path, kChanged);
    return now;
}

// Reads from the open file. A read that fails because the file changed under
// it, cut short or half rewritten, tells the change rather than what the
// bytes it found looked like.
template <typename Read> void readUnchanged(const std::string& path, Read read) {
    const Seen before = seenUnchanged(path);
    try {
        read(openCapture(path, before.st, before.version));
    } catch (const ParseError&) {
        if (!(seen(path).version == before.version))
            throw ParseError(path, kChanged);
        throw;
    }
}

void readAt(const OpenCapture& f, std::uint64_t offset, std::vector<std::uint8_t>& buffer) {
    if (offset >= f.dataSize)
        noFrame(f.path, offset);
    if (f.pcap)
        readPcapRecord(f, offset, f.dataSize, buffer);
    else
        readPcapngBlock(f, offset, f.dataSize, buffer);
}

} // namespace

void FrameReader::read(const std::string& path, std::uint64_t offset,
                       std::vector<std::uint8_t>& buffer) {
    readUnchanged(path, [&](const OpenCapture& f) { readAt(f, offset, buffer); });
}

void FrameReader::readEach(
    const std::string& path, const std::vector<std::uint64_t>& offsets,
    const std::function<void(std::size_t, std::vector<std::uint8_t>&)>& use) {
    if (offsets.empty())
        return;
    readUnchanged(path, [&](const OpenCapture& f) {
        thread_local std::vector<std::uint8_t> buffer;
        for (std::size_t i = 0; i < offsets.size(); ++i) {
            readAt(f, offsets[i], buffer);
            use(i, buffer);
        }
    });
}

} // namespace TavIec61850Parser
