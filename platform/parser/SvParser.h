#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace TavIec61850Parser {

// One channel of seqData: the 9-2LE / IEC 61869-9 layout.
struct SvValue {
    std::int32_t value = 0;
    std::uint32_t quality = 0;
};
static_assert(sizeof(SvValue) == 8, "seqData holds 8 bytes per channel");

// The sample counters of one ASDU, packed into 8 bytes.
struct AsduCounters {
    std::uint16_t smpCnt = 0;
    std::uint16_t smpRate = 0; // 0 when absent
    std::uint8_t smpSynch = 0;
    std::uint8_t smpMod = 0;
    std::uint8_t hasSmpRate = 0;
    std::uint8_t hasSmpMod = 0;
};
static_assert(sizeof(AsduCounters) == 8, "the counters are one 8-byte value");

// One decoded SV application service data unit.
struct ASDUData {
    std::string svId;
    std::string datSet; // empty when absent
    AsduCounters counters;
    std::vector<std::uint8_t> gmIdentity; // empty when absent
    std::uint64_t confRev = 0;
    std::vector<SvValue> values; // in data-set order, the complete 8-byte entries
};

// Per ASDU, the seqData bytes after its last complete 8-byte entry: a data set
// that is not whole channels keeps them here, uninterpreted.
using SeqDataRests = std::vector<std::vector<std::uint8_t>>;

class SvParser {
public:
    // Decodes every ASDU of the SV frame whose record starts at `offset` in the
    // capture file. Throws ParseError when the file is gone, changed since it was
    // parsed, or holds no SV frame there.
    static std::vector<ASDUData> parseASDUFromFile(const std::string& path,
                                                   unsigned long long offset);
    // The same for several frames of one file, which is checked once for all
    // of them; `use` gets each frame's place in `offsets` and its ASDUs, and
    // must not read frames itself.
    static void
    parseASDUsFromFile(const std::string& path, const std::vector<std::uint64_t>& offsets,
                       const std::function<void(std::size_t, std::vector<ASDUData>&)>& use);

    // The same, also giving each ASDU's seqData bytes beyond its values.
    static std::vector<ASDUData> parseASDUWithRestsFromFile(const std::string& path,
                                                            unsigned long long offset,
                                                            SeqDataRests& rests);

    // Decodes every ASDU of one Ethernet frame. Throws MalformedFrame when the
    // bytes are not a well-formed SV frame.
    static std::vector<ASDUData> parseASDUFromFrame(const std::uint8_t* frame, std::size_t size,
                                                    SeqDataRests* rests = nullptr);
};

} // namespace TavIec61850Parser
