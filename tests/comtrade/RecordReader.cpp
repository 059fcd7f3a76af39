#include "tests/comtrade/RecordReader.h"

#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>

namespace TavTest {

namespace {

std::vector<std::string> split(const std::string& line, char separator) {
    std::vector<std::string> fields;
    std::string field;
    std::istringstream in(line);
    while (std::getline(in, field, separator))
        fields.push_back(field);
    if (!line.empty() && line.back() == separator)
        fields.emplace_back();
    return fields;
}

// Every line ends in CR LF.
std::vector<std::string> crlfLines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = text.find("\r\n", at);
        EXPECT_NE(end, std::string::npos) << "a line without CR LF";
        if (end == std::string::npos)
            break;
        lines.push_back(text.substr(at, end - at));
        at = end + 2;
    }
    return lines;
}

template <typename T> T little(const std::string& bytes, std::size_t& at) {
    std::uint64_t v = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        v |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes.at(at + i))) << (8 * i);
    at += sizeof(T);
    return static_cast<T>(v);
}

void readCfg(Record& r, const std::string& base) {
    for (const auto& line : crlfLines(readFile(base + ".cfg")))
        r.cfg.push_back(split(line, ','));
    const auto& c = r.cfg;
    ASSERT_GE(c.size(), 2u);
    r.station = c[0].at(0);
    r.device = c[0].at(1);
    r.revision = c[0].at(2);
    const std::size_t analog = std::stoul(c[1].at(1));
    const std::size_t digital = std::stoul(c[1].at(2));
    ASSERT_EQ(std::stoul(c[1].at(0)), analog + digital);
    std::size_t l = 2;
    for (std::size_t i = 0; i < analog; ++i, ++l) {
        const auto& f = c.at(l);
        ASSERT_EQ(f.size(), 13u);
        EXPECT_EQ(f[0], std::to_string(i + 1));
        r.analog.push_back({f[1], f[2], f[3], f[4], std::stod(f[5]), std::stod(f[6]),
                            std::stoll(f[8]), std::stoll(f[9]), f[12]});
    }
    for (std::size_t i = 0; i < digital; ++i, ++l) {
        ASSERT_EQ(c.at(l).size(), 5u);
        r.digitalIds.push_back(c[l][1]);
    }
    ++l; // line frequency
    r.rates = std::stoi(c.at(l++).at(0));
    r.sampleRate = std::stod(c.at(l).at(0));
    r.endSample = std::stoull(c.at(l++).at(1));
    r.start = c.at(l).at(0) + "," + c.at(l).at(1);
    ++l;
    r.trigger = c.at(l).at(0) + "," + c.at(l).at(1);
    ++l;
    r.fileType = c.at(l++).at(0);
    r.timeMultiplier = std::stod(c.at(l++).at(0));
    EXPECT_EQ(c.size(), r.revision == "2013" ? l + 2 : l);
}

void readAscii(Record& r, const std::string& text) {
    for (const auto& line : crlfLines(text)) {
        const auto f = split(line, ',');
        ASSERT_EQ(f.size(), 2 + r.analog.size() + r.digitalIds.size());
        RecordRow row{static_cast<std::uint32_t>(std::stoul(f[0])),
                      static_cast<std::uint32_t>(std::stoul(f[1])),
                      {},
                      {}};
        for (std::size_t i = 0; i < r.analog.size(); ++i) {
            const std::string& v = f[2 + i];
            const bool missing = v.empty() || (r.revision == "1999" && v == "99999");
            row.analog.push_back(missing ? std::nullopt : std::optional(std::stoll(v)));
        }
        for (std::size_t i = 0; i < r.digitalIds.size(); ++i)
            row.digital.push_back(std::stoi(f[2 + r.analog.size() + i]));
        r.rows.push_back(row);
    }
}

void readBinary(Record& r, const std::string& bytes) {
    const bool wide = r.fileType == "BINARY32";
    const std::size_t words = (r.digitalIds.size() + 15) / 16;
    const std::size_t size = 8 + r.analog.size() * (wide ? 4 : 2) + 2 * words;
    ASSERT_EQ(bytes.size() % size, 0u);
    for (std::size_t at = 0; at < bytes.size();) {
        RecordRow row;
        row.number = little<std::uint32_t>(bytes, at);
        row.time = little<std::uint32_t>(bytes, at);
        for (std::size_t i = 0; i < r.analog.size(); ++i) {
            const std::int64_t v =
                wide ? little<std::int32_t>(bytes, at) : little<std::int16_t>(bytes, at);
            const bool missing = v == (wide ? INT32_MIN : INT16_MIN);
            row.analog.push_back(missing ? std::nullopt : std::optional(v));
        }
        std::vector<std::uint16_t> w;
        for (std::size_t i = 0; i < words; ++i)
            w.push_back(little<std::uint16_t>(bytes, at));
        for (std::size_t i = 0; i < r.digitalIds.size(); ++i)
            row.digital.push_back((w[i / 16] >> (i % 16)) & 1);
        r.rows.push_back(row);
    }
}

} // namespace

Record readRecord(const std::string& base) {
    Record r;
    readCfg(r, base);
    const std::string data = readFile(base + ".dat");
    if (r.fileType == "ASCII")
        readAscii(r, data);
    else
        readBinary(r, data);
    return r;
}

} // namespace TavTest
