#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TavTest {

// A .cfg/.dat pair as the format describes it, read without the writer's code.
struct RecordAnalog {
    std::string id, phase, circuit, unit;
    double a = 0, b = 0;
    std::int64_t min = 0, max = 0;
    std::string primarySecondary;
};

struct RecordRow {
    std::uint32_t number = 0;
    std::uint32_t time = 0;
    std::vector<std::optional<std::int64_t>> analog; // stored integers; empty when missing
    std::vector<int> digital;
};

struct Record {
    std::vector<std::vector<std::string>> cfg; // every line's fields
    std::string station, device, revision;
    std::vector<RecordAnalog> analog;
    std::vector<std::string> digitalIds;
    int rates = 0;
    double sampleRate = 0;
    std::uint64_t endSample = 0;
    std::string start, trigger, fileType;
    double timeMultiplier = 1;
    std::vector<RecordRow> rows;

    double value(const RecordRow& row, std::size_t channel) const {
        return analog[channel].a * static_cast<double>(*row.analog[channel]) + analog[channel].b;
    }
    // Microseconds since the first row.
    double micros(const RecordRow& row) const { return row.time * timeMultiplier; }
};

// Reads BASE.cfg and BASE.dat; a line or a field out of place fails the test.
Record readRecord(const std::string& base);

} // namespace TavTest
