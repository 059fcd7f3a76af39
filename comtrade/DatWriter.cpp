#include "comtrade/DatWriter.h"

#include <cmath>
#include <string>

namespace TavComtrade {

const char* DataEncoding::fileType() const {
    if (format == DataFormat::Ascii)
        return "ASCII";
    return wide() ? "BINARY32" : "BINARY";
}

namespace {

template <typename T> void putLittleEndian(std::vector<char>& out, T value) {
    auto bits = static_cast<std::make_unsigned_t<T>>(value);
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        out.push_back(static_cast<char>(bits & 0xFF));
        bits = static_cast<decltype(bits)>(bits >> 8);
    }
}

} // namespace

DatWriter::DatWriter(std::ostream& out, DataEncoding encoding, std::vector<ChannelScale> scales,
                     std::size_t digitalCount, double timeUnitUs, std::int64_t firstNs)
    : out_(out), encoding_(encoding), scales_(std::move(scales)), digitalCount_(digitalCount),
      timeUnitNs_(timeUnitUs * 1000.0), firstNs_(firstNs) {}

void DatWriter::write(const Row& row) {
    ++rows_;
    const double units = static_cast<double>(row.ns - firstNs_) / timeUnitNs_;
    const auto time = static_cast<std::uint32_t>(std::llround(std::max(0.0, units)));
    buffer_.clear();
    if (encoding_.format == DataFormat::Binary)
        _writeBinary(time, row);
    else
        _writeAscii(time, row);
    out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
}

// Missing samples take the most negative value of their width.
void DatWriter::_writeBinary(std::uint32_t time, const Row& row) {
    putLittleEndian(buffer_, static_cast<std::uint32_t>(rows_));
    putLittleEndian(buffer_, time);
    for (std::size_t c = 0; c < scales_.size(); ++c) {
        const bool missing = row.analog[c] == kMissing;
        const std::int64_t v = missing ? 0 : scales_[c].store(row.analog[c]);
        if (encoding_.wide())
            putLittleEndian(buffer_,
                            missing ? std::int32_t{INT32_MIN} : static_cast<std::int32_t>(v));
        else
            putLittleEndian(buffer_,
                            missing ? std::int16_t{INT16_MIN} : static_cast<std::int16_t>(v));
    }
    // Sixteen channels a word, the first in the lowest bit.
    for (std::size_t w = 0; w < (digitalCount_ + 15) / 16; ++w) {
        std::uint16_t word = 0;
        for (std::size_t bit = 0; bit < 16 && w * 16 + bit < digitalCount_; ++bit)
            if (row.digital[w * 16 + bit] != 0)
                word = static_cast<std::uint16_t>(word | (1u << bit));
        putLittleEndian(buffer_, word);
    }
}

// A missing sample is 99999 in a 1999 file and an empty field in a 2013 one.
void DatWriter::_writeAscii(std::uint32_t time, const Row& row) {
    std::string line = std::to_string(rows_) + "," + std::to_string(time);
    for (std::size_t c = 0; c < scales_.size(); ++c) {
        line += ',';
        if (row.analog[c] != kMissing)
            line += std::to_string(scales_[c].store(row.analog[c]));
        else if (encoding_.revision == Revision::Rev1999)
            line += "99999";
    }
    for (std::size_t d = 0; d < digitalCount_; ++d)
        line += row.digital[d] != 0 ? ",1" : ",0";
    line += "\r\n";
    buffer_.assign(line.begin(), line.end());
}

} // namespace TavComtrade
