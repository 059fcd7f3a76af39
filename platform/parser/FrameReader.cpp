#include "platform/parser/FrameReader.h"

#include "platform/gzip/GzipCache.h"
#include "platform/parser/CookedLinkLayer.h"
#include "platform/parser/FileRegistry.h"
#include "platform/parser/InflatedCapture.h"
#include "platform/parser/MappedFile.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/PcapReader.h"
#include "platform/parser/PcapngReader.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace TavIec61850Parser {

namespace {

std::atomic<bool> readThroughMapping{true};

// Drawing reads thousands of frames of one file in a row; keeping that file
// mapped per thread spares an open, a header read and a system call per
// frame. The path is still stat'ed for every batch, so a replaced or deleted
// file is noticed.
struct OpenCapture {
    std::string path;
    dev_t device = 0;
    ino_t inode = 0;
    FileVersion version; // a file rewritten in place keeps its inode
    int fd = -1;
    std::unique_ptr<MappedFile> map; // null while reading with a call per frame
    std::optional<PcapHeader> pcap;  // empty for pcapng
    LinkLayout links;                // pcapng only
    std::uint64_t dataSize = 0;      // of the file, or of a compressed file's inflated copy
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

    // `n` bytes at `at`, from the mapping or read into `scratch`; fewer when
    // the file ends first.
    std::size_t bytesAt(std::uint64_t at, std::size_t n, std::uint8_t* scratch,
                        const std::uint8_t*& bytes) const {
        if (map) {
            if (at >= map->size())
                return 0;
            bytes = map->data() + at;
            return static_cast<std::size_t>(std::min<std::uint64_t>(n, map->size() - at));
        }
        const ssize_t got = ::pread(fd, scratch, n, static_cast<off_t>(at));
        if (got < 0)
            throw ParseError(path, std::string("cannot read: ") + std::strerror(errno));
        bytes = scratch;
        return static_cast<std::size_t>(got);
    }
};

[[noreturn]] void noFrame(const std::string& path, std::uint64_t offset) {
    throw ParseError(path, "no frame record at byte " + std::to_string(offset));
}

void readExactly(const OpenCapture& f, void* to, std::size_t n, std::uint64_t at) {
    const std::uint8_t* bytes = nullptr;
    if (f.bytesAt(at, n, static_cast<std::uint8_t*>(to), bytes) != n)
        noFrame(f.path, at);
    if (bytes != to)
        std::memcpy(to, bytes, n);
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
    const bool mapped = readThroughMapping.load(std::memory_order_relaxed);
    if ((f.fd >= 0 || f.map) && f.path == path && f.device == st.st_dev && f.inode == st.st_ino &&
        f.version == version && (f.map != nullptr) == mapped)
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
        if (mapped)
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

// Bytes read with a record header in the same call: enough for any frame of
// these protocols, so that a frame costs one read instead of two.
constexpr std::size_t kRecordReadAhead = 256;

void readPcapRecord(const OpenCapture& f, std::uint64_t offset, std::uint64_t fileSize,
                    std::vector<std::uint8_t>& buffer) {
    if (offset < kPcapFileHeaderSize || fileSize - offset < kPcapRecordHeaderSize)
        noFrame(f.path, offset);
    std::uint8_t scratch[kPcapRecordHeaderSize + kRecordReadAhead];
    const std::size_t want =
        static_cast<std::size_t>(std::min<std::uint64_t>(sizeof scratch, fileSize - offset));
    const std::uint8_t* chunk = nullptr;
    const std::size_t got = f.bytesAt(offset, want, scratch, chunk);
    if (got < kPcapRecordHeaderSize)
        noFrame(f.path, offset);
    const bool big = f.pcap->bigEndian;
    std::uint32_t captured = ByteReader::load32(chunk + 8, big);
    std::uint32_t original = ByteReader::load32(chunk + 12, big);
    // Bytes from the middle of a frame rarely pass for a record header, and
    // the frame decoders check the rest.
    if (!plausibleRecord(captured, original) ||
        captured > fileSize - offset - kPcapRecordHeaderSize)
        noFrame(f.path, offset);
    const std::size_t ahead = got - kPcapRecordHeaderSize;
    if (captured <= ahead) {
        buffer.assign(chunk + kPcapRecordHeaderSize, chunk + kPcapRecordHeaderSize + captured);
    } else {
        buffer.resize(captured);
        readExactly(f, buffer.data(), captured, offset + kPcapRecordHeaderSize);
    }
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

// The open file, after making sure it is still the one that was parsed.
const OpenCapture& openUnchanged(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0)
        throw ParseError(path, "the file is gone");
    const FileVersion now{static_cast<std::uint64_t>(st.st_size),
                          st.st_mtim.tv_sec * 1'000'000'000LL + st.st_mtim.tv_nsec};
    if (auto parsed = FileRegistry::lookup(path); parsed && !(*parsed == now))
        throw ParseError(path, "the file has changed since it was parsed");
    return openCapture(path, st, now);
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

void FrameReader::setReadThroughMapping(bool mapped) {
    readThroughMapping.store(mapped);
}

void FrameReader::read(const std::string& path, std::uint64_t offset,
                       std::vector<std::uint8_t>& buffer) {
    readAt(openUnchanged(path), offset, buffer);
}

void FrameReader::readEach(
    const std::string& path, const std::vector<std::uint64_t>& offsets,
    const std::function<void(std::size_t, std::vector<std::uint8_t>&)>& use) {
    if (offsets.empty())
        return;
    const OpenCapture& f = openUnchanged(path);
    thread_local std::vector<std::uint8_t> buffer;
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        readAt(f, offsets[i], buffer);
        use(i, buffer);
    }
}

} // namespace TavIec61850Parser
