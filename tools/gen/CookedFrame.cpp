#include "tools/gen/CookedFrame.h"

#include "tools/gen/EthernetFrame.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <zlib.h>

namespace TavGen {

namespace {

constexpr std::uint16_t kArpEthernet = 1;
constexpr std::uint8_t kPacketMulticast = 2; // SV and GOOSE go to group addresses
constexpr std::size_t kAddresses = 12;
constexpr std::uint32_t kInterfaceIndex = 1;

void put16(std::vector<std::uint8_t>& out, std::uint16_t v) {
    out.push_back(static_cast<std::uint8_t>(v >> 8));
    out.push_back(static_cast<std::uint8_t>(v));
}

// Eight address bytes: the six of the source and two of padding.
void putAddress(std::vector<std::uint8_t>& out, std::span<const std::uint8_t> ethernet) {
    out.insert(out.end(), ethernet.begin() + 6, ethernet.begin() + 12);
    out.insert(out.end(), {0, 0});
}

} // namespace

std::span<const std::uint8_t> onLinkLayer(LinkLayer link, std::span<const std::uint8_t> ethernet,
                                          std::vector<std::uint8_t>& buffer) {
    if (link == LinkLayer::Ethernet || ethernet.size() < kAddresses + 2)
        return ethernet;
    const std::uint16_t protocol =
        static_cast<std::uint16_t>(ethernet[kAddresses] << 8 | ethernet[kAddresses + 1]);
    buffer.clear();
    if (link == LinkLayer::LinuxSll) {
        put16(buffer, kPacketMulticast);
        put16(buffer, kArpEthernet);
        put16(buffer, 6);
        putAddress(buffer, ethernet);
        put16(buffer, protocol);
    } else {
        put16(buffer, protocol);
        put16(buffer, 0); // reserved
        buffer.resize(buffer.size() + 4);
        putBigEndian32(buffer.data() + buffer.size() - 4, kInterfaceIndex);
        put16(buffer, kArpEthernet);
        buffer.push_back(kPacketMulticast);
        buffer.push_back(6);
        putAddress(buffer, ethernet);
    }
    buffer.insert(buffer.end(), ethernet.begin() + kAddresses + 2, ethernet.end());
    return buffer;
}

void gzipFile(const std::string& path) {
    const std::string packed = path + ".gz-part";
    std::FILE* in = std::fopen(path.c_str(), "rb");
    gzFile out = gzopen(packed.c_str(), "wb6");
    bool ok = in && out;
    std::vector<char> chunk(1 << 20);
    while (ok) {
        const std::size_t n = std::fread(chunk.data(), 1, chunk.size(), in);
        if (n == 0)
            break;
        ok = gzwrite(out, chunk.data(), static_cast<unsigned>(n)) == static_cast<int>(n);
    }
    ok = ok && !std::ferror(in);
    if (in)
        std::fclose(in);
    if (out)
        ok = gzclose(out) == Z_OK && ok;
    if (!ok) {
        std::remove(packed.c_str());
        throw std::runtime_error("cannot compress " + path);
    }
    std::filesystem::rename(packed, path);
}

} // namespace TavGen
