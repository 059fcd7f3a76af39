#pragma once

#include "platform/parser/EthernetDecoder.h"
#include "platform/parser/Filter.h"
#include "platform/parser/GooseDecoder.h"
#include "platform/parser/StreamRecords.h"
#include "platform/parser/SvDecoder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace TavIec61850Parser {

// Files each decoded frame under its stream in the database. Consecutive
// frames nearly always belong to one of a handful of streams, so the target
// file is remembered by the raw bytes of the stream key in a small
// direct-mapped cache, and the hash set and its string keys are touched only
// when a stream shows up for the first time.
class StreamIndex {
public:
    StreamIndex(Db& db, const Filter& filter, std::string path);

    // Files a frame that matches the template of the stream expected next,
    // without decoding it. False when it does not: decode it and call addSv.
    bool addKnownSv(const std::uint8_t* frame, std::size_t size, const Package& p);
    void addSv(const EthernetFrame& eth, const SvFrameView& sv, const Package& p,
               const std::uint8_t* frame, std::size_t size);
    void addGoose(const EthernetFrame& eth, const GooseFrameView& goose, const Package& p);

    // Gives back the vector slack of every file touched.
    void finish();

private:
    static constexpr std::size_t kMaxKey = 320;
    static constexpr std::size_t kSlots = 64;

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
    static constexpr std::size_t kNone = kSlots;

    struct Slot {
        RawKey key;
        const PackageFile* file = nullptr; // null: the filter drops this stream
        const Sv* sv = nullptr;            // SV only, for the svIDs its ASDUs carry
        bool used = false;
        FrameTemplate frame;      // SV only
        std::size_t next = kNone; // the slot whose frame came after this one's last time
    };

    static void putEthernet(RawKey& key, char kind, const EthernetFrame& eth, std::uint16_t appId);
    std::size_t cached(const RawKey& key);
    std::size_t remember(const RawKey& key, const PackageFile* file);
    void followedBy(std::size_t slot);
    const PackageFile* svTarget(const EthernetFrame& eth, const SvFrameView& sv);
    const PackageFile* gooseTarget(const EthernetFrame& eth, const GooseFrameView& goose);
    const PackageFile* fileOf(PackageFiles& files);
    static void noteSvIds(const Sv& stream, const EthernetFrame& eth);
    // Appends the package to the key's file; the slot used, or kNone.
    template <class MakeTarget>
    std::size_t file(const RawKey& key, const Package& p, MakeTarget makeTarget);

    Db& db_;
    const Filter& filter_;
    std::string path_;
    std::array<Slot, kSlots> slots_{};
    std::size_t lastSlot_ = 0;
    std::size_t lastSv_ = kNone;
    const Sv* lastSvStream_ = nullptr; // the stream svTarget made or found last
    std::vector<const PackageFile*> touched_;
};

} // namespace TavIec61850Parser
