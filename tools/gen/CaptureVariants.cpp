#include "tools/gen/CaptureVariants.h"

#include "tools/gen/GenOptions.h"

#include <charconv>

namespace TavGen {

namespace {

std::uint32_t parseBytes(const std::string& option, const std::string& text, std::uint32_t high) {
    std::uint32_t value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size() || value > high)
        throw UsageError(option + " takes a whole number from 0 to " + std::to_string(high) +
                         ", not '" + text + "'");
    return value;
}

LinkLayer parseLink(const std::string& text) {
    if (text == "ethernet")
        return LinkLayer::Ethernet;
    if (text == "sll")
        return LinkLayer::LinuxSll;
    if (text == "sll2")
        return LinkLayer::LinuxSll2;
    throw UsageError("--link takes ethernet, sll or sll2, not '" + text + "'");
}

} // namespace

bool applyVariantFlag(CaptureVariants& v, const std::string& name) {
    if (name == "--distinct-svids")
        v.distinctSvIds = true;
    else if (name == "--empty-integer")
        v.emptyInteger = true;
    else if (name == "--vlan-dei")
        v.dropEligible = true;
    else if (name == "--gzip")
        v.gzip = true;
    else
        return false;
    return true;
}

bool applyVariantValue(CaptureVariants& v, const std::string& name, const std::string& value) {
    if (name == "--seqdata-bytes")
        v.seqDataBytes = parseBytes(name, value, 1024);
    else if (name == "--declared-entries")
        v.declaredEntries = parseBytes(name, value, 100'000);
    else if (name == "--link")
        v.link = parseLink(value);
    else
        return false;
    return true;
}

void applyVariants(const CaptureVariants& v, Scenario& scenario) {
    scenario.link = v.link;
    scenario.gzip = v.gzip;
    for (SvStreamConfig& sv : scenario.sv) {
        sv.seqDataBytes = v.seqDataBytes;
        sv.distinctSvIds = v.distinctSvIds;
        sv.tagging.dropEligible = v.dropEligible;
    }
    for (GooseStreamConfig& goose : scenario.goose) {
        goose.emptyInteger = v.emptyInteger;
        goose.declaredEntries = v.declaredEntries;
        goose.tagging.dropEligible = v.dropEligible;
    }
}

} // namespace TavGen
