#pragma once

#include "tools/gen/Scenario.h"

#include <cstdint>
#include <optional>
#include <string>

namespace TavGen {

// Options that shape captures the way real devices and capture set-ups do:
// data sets other than 8 bytes a channel, ASDUs of several svIDs, Linux
// cooked link layers, gzip, and encodings a strict reader must refuse.
struct CaptureVariants {
    std::optional<std::uint32_t> seqDataBytes;
    bool distinctSvIds = false;
    bool emptyInteger = false;
    std::optional<std::uint32_t> declaredEntries;
    bool dropEligible = false;
    LinkLayer link = LinkLayer::Ethernet;
    bool gzip = false;
};

// True when `name` is one of these options that take no value.
bool applyVariantFlag(CaptureVariants& v, const std::string& name);
// True when `name` is one of these options that take a value; a bad value
// throws UsageError.
bool applyVariantValue(CaptureVariants& v, const std::string& name, const std::string& value);
// Carries the options into every stream of the scenario.
void applyVariants(const CaptureVariants& v, Scenario& scenario);

} // namespace TavGen
