#pragma once

#include "platform/parser/StreamRecords.h"
#include "platform/parser/Timest.h"
#include "stream/StreamClocks.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace TavComtrade {

enum class Revision { Rev1999, Rev2013 };
enum class DataFormat { Binary, Ascii };
enum class Unit { Ampere, Volt };

// One SV channel to export: the value stored for a raw sample x is x × ratio,
// as the oscillograph draws it.
struct AnalogChoice {
    const TavIec61850Parser::Sv* stream = nullptr;
    std::size_t index = 0; // in the ASDU's data set
    std::string name;      // "Ia | <svID>"
    Unit unit = Unit::Ampere;
    std::string phase; // "A", "B", "C", "N"
    float ratio = 1.0f;
};

// One GOOSE data-set entry to export as a digital channel.
struct DigitalChoice {
    const TavIec61850Parser::Goose* stream = nullptr;
    std::size_t index = 0; // top-level allData element
    std::string name;      // "<index> | <goID>"
};

struct ExportRequest {
    std::vector<AnalogChoice> analog; // the first one's stream sets the rows
    std::vector<DigitalChoice> digital;
    // Both absent: everything the chosen streams hold.
    std::optional<TavIec61850Parser::Timest> from;
    std::optional<TavIec61850Parser::Timest> to;
    std::optional<TavIec61850Parser::Timest> trigger; // the first row's time when absent
    Revision revision = Revision::Rev1999;
    DataFormat format = DataFormat::Binary;
    std::string stationName;
    std::string deviceId;
    // The database's clocks, so that the record's instants are the window's;
    // absent, the chosen streams are surveyed for the export.
    std::shared_ptr<TavStream::StreamClocks> clocks;
};

// How the rows of SV streams other than the first were matched to it.
enum class Alignment {
    OneStream,     // a single SV stream
    SampleCounter, // same smpCnt, every stream synchronised at one rate
    NearestTime,   // the sample nearest in time
    GooseOnly,     // rows at the GOOSE frames
};

struct ExportResult {
    std::string cfgPath;
    std::string datPath;
    std::uint64_t rows = 0;
    Alignment alignment = Alignment::OneStream;
    double sampleRate = 0.0; // rows per second, 0 for GOOSE-only rows
};

// Told the share done (0..1); returns false to cancel the export.
using ProgressSink = std::function<bool(double)>;

const char* alignmentName(Alignment alignment);

} // namespace TavComtrade
