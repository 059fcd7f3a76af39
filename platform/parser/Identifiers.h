#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace TavIec61850 {

// The key of one SV stream, as the parser groups frames.
struct SvIdentifer {
    std::string srcMac;
    std::string dstMac;
    std::optional<std::uint16_t> vlanId;
    std::uint16_t appId = 0;
    std::string svId;
    std::uint32_t confRev = 0;

    friend bool operator==(const SvIdentifer&, const SvIdentifer&) = default;
};

// The key of one GOOSE stream, as the parser groups frames.
struct GooseIdentifer {
    std::string srcMac;
    std::string dstMac;
    std::optional<std::uint16_t> vlanId;
    std::uint16_t appId = 0;
    std::string gocbRef;
    std::string goId;
    std::string datSet;
    std::uint32_t confRev = 0;

    friend bool operator==(const GooseIdentifer&, const GooseIdentifer&) = default;
};

} // namespace TavIec61850
