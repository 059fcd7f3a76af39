#include "tools/gen/Faults.h"

#include "tools/gen/GenOptions.h"

#include <algorithm>
#include <charconv>
#include <map>

namespace TavGen {

namespace {

std::uint64_t parseWhole(const std::string& text, const std::string& faultText) {
    std::uint64_t v = 0;
    const bool hex = text.rfind("0x", 0) == 0;
    const char* begin = text.data() + (hex ? 2 : 0);
    const char* end = text.data() + text.size();
    const auto [at, ec] = std::from_chars(begin, end, v, hex ? 16 : 10);
    if (ec != std::errc() || at != end || begin == end)
        throw UsageError("bad number '" + text + "' in fault '" + faultText + "'");
    return v;
}

} // namespace

Fault parseFault(const std::string& faultText) {
    static const std::map<std::string, FaultKind> kinds{
        {"drop", FaultKind::Drop},           {"repeat", FaultKind::Repeat},
        {"reorder", FaultKind::Reorder},     {"pause", FaultKind::Pause},
        {"lose-a", FaultKind::LoseA},        {"lose-b", FaultKind::LoseB},
        {"synch", FaultKind::Synch},         {"quality", FaultKind::Quality},
        {"stnum-back", FaultKind::StNumBack}};
    const auto atSign = faultText.find('@');
    if (atSign == std::string::npos)
        throw UsageError("a fault is KIND[:VALUE]@SECONDS[xCOUNT], not '" + faultText + "'");
    std::string head = faultText.substr(0, atSign), tail = faultText.substr(atSign + 1);
    Fault f;
    if (const auto colon = head.find(':'); colon != std::string::npos) {
        const std::string value = head.substr(colon + 1);
        head.resize(colon);
        f.value = head == "pause" ? parseSeconds(value) : parseWhole(value, faultText);
    }
    const auto kind = kinds.find(head);
    if (kind == kinds.end())
        throw UsageError("unknown fault '" + head + "'");
    f.kind = kind->second;
    if (const auto x = tail.find('x'); x != std::string::npos) {
        f.count = parseWhole(tail.substr(x + 1), faultText);
        tail.resize(x);
    }
    f.atNs = parseSeconds(tail);
    return f;
}

bool reshapesFrames(FaultKind kind) {
    return kind != FaultKind::Synch && kind != FaultKind::Quality && kind != FaultKind::StNumBack;
}

bool anyReshaping(const std::vector<Fault>& faults) {
    return std::any_of(faults.begin(), faults.end(),
                       [](const Fault& f) { return reshapesFrames(f.kind); });
}

} // namespace TavGen
