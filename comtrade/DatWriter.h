#pragma once

#include "comtrade/ChannelScale.h"
#include "comtrade/ExportRequest.h"
#include "comtrade/RowBuilder.h"

#include <ostream>
#include <vector>

namespace TavComtrade {

// The data file's encoding for one revision and format.
struct DataEncoding {
    Revision revision = Revision::Rev1999;
    DataFormat format = DataFormat::Binary;

    // 2013 binary files keep 32-bit samples, so raw values need no scaling.
    bool wide() const { return format == DataFormat::Binary && revision == Revision::Rev2013; }
    std::int64_t limit() const { return wide() ? 2147483647 : 32767; }
    const char* fileType() const;
};

// Writes rows: sample number from 1, time since the first row in units of
// `timeUnitUs` microseconds, the stored analog integers, the digital states.
class DatWriter {
public:
    DatWriter(std::ostream& out, DataEncoding encoding, std::vector<ChannelScale> scales,
              std::size_t digitalCount, double timeUnitUs, std::int64_t firstNs);

    void write(const Row& row);
    std::uint64_t rows() const { return rows_; }

private:
    void _writeBinary(std::uint32_t time, const Row& row);
    void _writeAscii(std::uint32_t time, const Row& row);

    std::ostream& out_;
    DataEncoding encoding_;
    std::vector<ChannelScale> scales_;
    std::size_t digitalCount_;
    double timeUnitNs_;
    std::int64_t firstNs_;
    std::uint64_t rows_ = 0;
    std::vector<char> buffer_;
};

} // namespace TavComtrade
