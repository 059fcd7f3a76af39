#pragma once

#include "platform/parser/EthernetDecoder.h"
#include "platform/parser/Filter.h"
#include "platform/parser/GooseDecoder.h"
#include "platform/parser/LayoutCache.h"
#include "platform/parser/StreamRecords.h"
#include "platform/parser/SvDecoder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace TavIec61850Parser {

// Files each decoded frame under its stream in the database. The target file
// is remembered by the raw bytes of the stream key in a table that never
// forgets a stream, so the hash set and its string keys are touched only when
// a stream shows up for the first time; SV frames of a known layout are filed
// without decoding at all (LayoutCache).
class StreamIndex {
public:
    // A stream's file the parse added packages to, in the order first met.
    struct Touched {
        const Sv* sv = nullptr; // one of sv and goose is set
        const Goose* goose = nullptr;
        const PackageFile* file = nullptr;
    };

    StreamIndex(Db& db, const Filter& filter, std::string path);

    // Files a frame that matches the template of the stream expected next,
    // without decoding it. False when it does not: decode it and call addSv.
    bool addKnownSv(const std::uint8_t* frame, std::size_t size, const Package& p);
    void addSv(const EthernetFrame& eth, const SvFrameView& sv, const Package& p,
               const std::uint8_t* frame, std::size_t size);
    void addGoose(const EthernetFrame& eth, const GooseFrameView& goose, const Package& p);

    // Gives back the vector slack of every file touched.
    void finish();
    const std::vector<Touched>& touched() const { return touched_; }

private:
    static constexpr std::size_t kMaxKey = 320;
    // Streams remembered; a capture with more decodes the rest in full.
    static constexpr std::size_t kMaxSlots = 1 << 16;

    struct RawKey {
        std::array<std::uint8_t, kMaxKey> bytes;
        std::size_t size = 0;
        bool fits = true;
        void put(const void* p, std::size_t n);
        void putText(std::string_view s);
        std::string_view view() const {
            return {reinterpret_cast<const char*>(bytes.data()), size};
        }
    };
    static constexpr std::uint32_t kNone = LayoutCache::kNone;

    struct Slot {
        RawKey key;
        const PackageFile* file = nullptr; // null: the filter drops this stream
        const Sv* sv = nullptr;            // SV only, for the svIDs its ASDUs carry
    };

    static void putEthernet(RawKey& key, char kind, const EthernetFrame& eth, std::uint16_t appId);
    std::uint32_t cached(const RawKey& key);
    std::uint32_t remember(const RawKey& key, const PackageFile* file);
    void grow();
    const PackageFile* svTarget(const EthernetFrame& eth, const SvFrameView& sv);
    const PackageFile* gooseTarget(const EthernetFrame& eth, const GooseFrameView& goose);
    const PackageFile* fileOf(const Sv* sv, const Goose* goose, PackageFiles& files);
    static void noteSvIds(const Sv& stream, const EthernetFrame& eth);
    // Appends the package to the key's file; the slot used, or kNone.
    template <class MakeTarget>
    std::uint32_t file(const RawKey& key, const Package& p, MakeTarget makeTarget);

    Db& db_;
    const Filter& filter_;
    std::string path_;
    std::vector<Slot> slots_;
    // Open addressing over slots_ by the key's hash; a power of two long.
    std::vector<std::uint32_t> table_ = std::vector<std::uint32_t>(64, kNone);
    std::uint32_t lastSlot_ = kNone;
    LayoutCache layouts_;
    const Sv* lastSvStream_ = nullptr; // the stream svTarget made or found last
    std::vector<Touched> touched_;
};

} // namespace TavIec61850Parser
