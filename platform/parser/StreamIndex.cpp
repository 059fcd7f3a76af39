#include "platform/parser/StreamIndex.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace TavIec61850Parser {

namespace {

std::string mac(const std::uint8_t* p) {
    char text[18];
    formatMac(p, text);
    return text;
}

template <class Stream> void fillEthernet(Stream& s, const EthernetFrame& eth) {
    s.srcMac = mac(eth.src);
    s.dstMac = eth.dstKnown ? mac(eth.dst) : kUnknownMac;
    if (eth.vlanCount > 0) {
        VlanTag tag;
        tag.id = eth.vlanId;
        if (eth.vlanCount > 1)
            tag.innerId = eth.innerVlanId;
        tag.priority = eth.vlanPriority;
        s.vlan = tag;
    }
    if (eth.hasHsr)
        s.hsr = HsrTag{(eth.hsrPath & 1) ? 'B' : 'A', eth.hsrPath, eth.hsrSequence};
    if (eth.hasPrp)
        s.prp = PrpTrailer{eth.prpLan == 0xB ? 'B' : 'A', eth.prpLan, eth.prpSequence};
}

template <class Id> bool listed(const std::vector<Id>& ids, const Id& id) {
    return ids.empty() || std::find(ids.begin(), ids.end(), id) != ids.end();
}

} // namespace

void StreamIndex::RawKey::put(const void* p, std::size_t n) {
    if (n > kMaxKey - size) {
        fits = false;
        return;
    }
    if (n == 0) // an absent goID has no bytes to copy, and memcpy wants a pointer
        return;
    std::memcpy(bytes.data() + size, p, n);
    size += n;
}

void StreamIndex::RawKey::putText(std::string_view s) {
    // The length goes first so that adjacent texts cannot trade bytes.
    std::uint16_t n = static_cast<std::uint16_t>(std::min<std::size_t>(s.size(), 0xFFFF));
    put(&n, sizeof n);
    put(s.data(), s.size());
}

StreamIndex::StreamIndex(Db& db, const Filter& filter, std::string path)
    : db_(db), filter_(filter), path_(std::move(path)) {}

void StreamIndex::putEthernet(RawKey& key, char kind, const EthernetFrame& eth,
                              std::uint16_t appId) {
    // An unknown destination's zero bytes must not pass for a real address.
    const char kindAndLink = eth.dstKnown ? kind : static_cast<char>(kind | 0x20);
    key.put(&kindAndLink, 1);
    key.put(eth.dst, 12); // destination and source, adjacent in the frame
    std::uint8_t hasVlan = eth.vlanCount > 0;
    key.put(&hasVlan, 1);
    key.put(&eth.vlanId, sizeof eth.vlanId);
    key.put(&appId, sizeof appId);
}

std::uint32_t StreamIndex::cached(const RawKey& key) {
    auto same = [&](std::uint32_t i) {
        const RawKey& k = slots_[i].key;
        return k.size == key.size && std::memcmp(k.bytes.data(), key.bytes.data(), key.size) == 0;
    };
    if (lastSlot_ != kNone && same(lastSlot_))
        return lastSlot_;
    const std::size_t mask = table_.size() - 1;
    for (std::size_t i = std::hash<std::string_view>{}(key.view()) & mask;; i = (i + 1) & mask) {
        const std::uint32_t slot = table_[i];
        if (slot == kNone)
            return kNone;
        if (same(slot))
            return lastSlot_ = slot;
    }
}

// Doubles the table, keeping it at most half full so that probes stay short.
void StreamIndex::grow() {
    std::vector<std::uint32_t> bigger(table_.size() * 2, kNone);
    const std::size_t mask = bigger.size() - 1;
    for (std::uint32_t slot = 0; slot < slots_.size(); ++slot) {
        std::size_t i = std::hash<std::string_view>{}(slots_[slot].key.view()) & mask;
        while (bigger[i] != kNone)
            i = (i + 1) & mask;
        bigger[i] = slot;
    }
    table_.swap(bigger);
}

std::uint32_t StreamIndex::remember(const RawKey& key, const PackageFile* file) {
    if (slots_.size() >= kMaxSlots)
        return kNone;
    if ((slots_.size() + 1) * 2 > table_.size())
        grow();
    const auto slot = static_cast<std::uint32_t>(slots_.size());
    Slot& s = slots_.emplace_back();
    s.key.size = key.size;
    std::memcpy(s.key.bytes.data(), key.bytes.data(), key.size);
    s.file = file;
    const std::size_t mask = table_.size() - 1;
    std::size_t i = std::hash<std::string_view>{}(key.view()) & mask;
    while (table_[i] != kNone)
        i = (i + 1) & mask;
    table_[i] = slot;
    return lastSlot_ = slot;
}

const PackageFile* StreamIndex::fileOf(const Sv* sv, const Goose* goose, PackageFiles& files) {
    auto [it, added] = files.emplace(path_);
    if (added)
        touched_.push_back({sv, goose, &*it});
    return &*it;
}

const PackageFile* StreamIndex::svTarget(const EthernetFrame& eth, const SvFrameView& sv) {
    Sv s;
    fillEthernet(s, eth);
    s.appId = sv.header.appId;
    s.simulation = sv.header.simulation;
    s.svId.assign(sv.first.svId);
    s.confRev = sv.first.confRev;
    s.datSet.assign(sv.first.datSet);
    s.valuesPerAsdu = static_cast<std::uint32_t>(sv.first.valueCount());
    s.seqDataBytes = static_cast<std::uint32_t>(sv.first.seqDataSize);
    s.asdusPerFrame = sv.asduCount;
    if (!filter_.keep.sv || !listed(filter_.svIdentifiers, s.identifier()))
        return nullptr;
    auto it = db_.svProto.svs.insert(std::move(s)).first;
    if (it->asduSvIds.empty())
        it->asduSvIds.emplace_back(sv.first.svId);
    lastSvStream_ = &*it;
    return fileOf(&*it, nullptr, it->files);
}

// Only frames whose ASDUs disagree on the svID get here, and they are rare:
// a frame that matches its stream's template repeats the svIDs already seen.
void StreamIndex::noteSvIds(const Sv& stream, const EthernetFrame& eth) {
    std::vector<ASDUData> asdus;
    decodeSvApdu(eth.payload, eth.payloadSize, &asdus);
    for (const ASDUData& a : asdus)
        if (std::find(stream.asduSvIds.begin(), stream.asduSvIds.end(), a.svId) ==
            stream.asduSvIds.end())
            stream.asduSvIds.push_back(a.svId);
}

const PackageFile* StreamIndex::gooseTarget(const EthernetFrame& eth, const GooseFrameView& g) {
    Goose s;
    fillEthernet(s, eth);
    s.appId = g.header.appId;
    s.simulation = g.simulation || g.header.simulation;
    s.gocbRef.assign(g.gocbRef);
    s.datSet.assign(g.datSet);
    s.goId.assign(g.goId);
    s.confRev = static_cast<std::uint32_t>(g.confRev);
    s.entries = g.entries;
    s.numDatSetEntries = g.numDatSetEntries;
    if (!filter_.keep.goose || !listed(filter_.gooseIdentifiers, s.identifier()))
        return nullptr;
    auto it = db_.gooseProto.gooses.insert(std::move(s)).first;
    return fileOf(nullptr, &*it, it->files);
}

template <class MakeTarget>
std::uint32_t StreamIndex::file(const RawKey& key, const Package& p, MakeTarget makeTarget) {
    std::uint32_t slot = key.fits ? cached(key) : kNone;
    const PackageFile* target = nullptr;
    if (slot != kNone) {
        target = slots_[slot].file;
    } else {
        target = makeTarget();
        if (key.fits)
            slot = remember(key, target);
    }
    if (target)
        target->append(p);
    return slot;
}

bool StreamIndex::addKnownSv(const std::uint8_t* frame, std::size_t size, const Package& p) {
    const std::uint32_t slot = layouts_.find(frame, size);
    if (slot == kNone)
        return false;
    if (const PackageFile* target = slots_[slot].file)
        target->append(p);
    return true;
}

void StreamIndex::addSv(const EthernetFrame& eth, const SvFrameView& sv, const Package& p,
                        const std::uint8_t* frame, std::size_t size) {
    RawKey key;
    putEthernet(key, 'S', eth, sv.header.appId);
    key.put(&sv.first.confRev, sizeof sv.first.confRev);
    key.putText(sv.first.svId);
    lastSvStream_ = nullptr;
    const std::uint32_t slot = file(key, p, [&] { return svTarget(eth, sv); });
    if (slot != kNone && lastSvStream_)
        slots_[slot].sv = lastSvStream_;
    const Sv* stream = slot != kNone ? slots_[slot].sv : lastSvStream_;
    if (sv.mixedSvIds && stream)
        noteSvIds(*stream, eth);
    // A rewritten cooked frame's template would also match an Ethernet frame
    // sent to the all-zero address, so such frames are always decoded.
    if (slot == kNone || !eth.dstKnown)
        return;
    VaryingBytes varying = sv.varying;
    if (eth.hsrSequenceAt)
        varying.add(eth.hsrSequenceAt, 2);
    if (eth.prpSequenceAt)
        varying.add(eth.prpSequenceAt, 2);
    layouts_.learn(slot, frame, size, varying);
}

void StreamIndex::addGoose(const EthernetFrame& eth, const GooseFrameView& g, const Package& p) {
    RawKey key;
    putEthernet(key, 'G', eth, g.header.appId);
    std::uint32_t confRev = static_cast<std::uint32_t>(g.confRev);
    key.put(&confRev, sizeof confRev);
    key.putText(g.gocbRef);
    key.putText(g.goId);
    key.putText(g.datSet);
    file(key, p, [&] { return gooseTarget(eth, g); });
}

void StreamIndex::finish() {
    for (const Touched& t : touched_)
        t.file->packages.shrink_to_fit();
}

} // namespace TavIec61850Parser
