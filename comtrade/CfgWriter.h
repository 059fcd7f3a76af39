#pragma once

#include "comtrade/ChannelScale.h"
#include "comtrade/DatWriter.h"
#include "comtrade/ExportRequest.h"

#include <ostream>
#include <vector>

namespace TavComtrade {

// Everything the configuration file states.
struct CfgContent {
    DataEncoding encoding;
    std::string stationName;
    std::string deviceId;
    const std::vector<AnalogChoice>* analog = nullptr;
    const std::vector<ChannelScale>* scales = nullptr;
    const std::vector<DigitalChoice>* digital = nullptr;
    int lineFrequency = 50;
    double sampleRate = 0.0; // 0: rows at irregular times, told by their time stamps
    std::uint64_t rows = 0;
    std::int64_t firstNs = 0;
    std::int64_t triggerNs = 0;
    double timeUnitUs = 1.0;
};

void writeCfg(std::ostream& out, const CfgContent& content);

// A field as the configuration file can hold it: no separators, at most 64
// bytes, ASCII only in a 1999 file.
std::string cfgField(const std::string& text, Revision revision);

// "dd/mm/yyyy,hh:mm:ss.ssssss" in UTC.
std::string cfgTime(std::int64_t ns);

} // namespace TavComtrade
