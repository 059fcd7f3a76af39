#pragma once

#include "platform/parser/StreamRecords.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace TavTest {

// What the captures hold, read with the parser alone: the ground truth an
// exported record is held against.
struct Capture {
    TavIec61850Parser::Db db;
    const TavIec61850Parser::Sv& sv(const std::string& svId) const;
    const TavIec61850Parser::Goose& goose(const std::string& goId) const;
};
std::unique_ptr<Capture> loadCapture(const std::vector<std::string>& paths);

struct TrueSample {
    std::int64_t ns = 0; // the frame's time, less one interval per later ASDU
    std::uint16_t smpCnt = 0;
    std::vector<std::int32_t> values;
};
std::vector<TrueSample> trueSamples(const TavIec61850Parser::Sv& stream, double rateHz);

struct TrueState {
    std::int64_t ns = 0;
    std::vector<float> values;
};
std::vector<TrueState> trueStates(const TavIec61850Parser::Goose& stream);
// The state of the last frame at or before `ns`; null before the first.
const TrueState* stateAt(const std::vector<TrueState>& states, std::int64_t ns);

// "dd/mm/yyyy,hh:mm:ss.ssssss", UTC.
std::string dayAndTime(std::int64_t ns);

} // namespace TavTest
