#pragma once

#include <cstdio>
#include <string>

namespace TavGen {

// The generated configuration's names of SV channel `k` (0-based): currents
// and voltages four by four, as merging units publish them.
struct SvChannelNode {
    bool current = true;
    unsigned instance = 1; // TCTR<instance> or TVTR<instance>
};

inline SvChannelNode svChannelNode(unsigned k) {
    const unsigned group = k / 8, place = k % 8;
    return place < 4 ? SvChannelNode{true, group * 4 + place + 1}
                     : SvChannelNode{false, group * 4 + place - 3};
}

inline const char* phaseOf(unsigned instance) {
    static const char* phases[] = {"A", "B", "C", "N"};
    return phases[(instance - 1) % 4];
}

// "01-0C-CD-04-00-00"
template <typename MacBytes> std::string sclMac(const MacBytes& mac) {
    char text[24];
    std::snprintf(text, sizeof text, "%02X-%02X-%02X-%02X-%02X-%02X", mac[0], mac[1], mac[2],
                  mac[3], mac[4], mac[5]);
    return text;
}

inline std::string hexText(unsigned value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, value);
    return text;
}

} // namespace TavGen
