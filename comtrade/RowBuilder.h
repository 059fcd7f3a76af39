#pragma once

#include "comtrade/ExportRequest.h"
#include "comtrade/GooseTimeline.h"
#include "comtrade/SvCursor.h"

#include <functional>
#include <memory>
#include <vector>

namespace TavComtrade {

// One row of the record: its instant, the raw value of each analog channel
// (kMissing where the stream has no sample for it) and each digital state.
struct Row {
    std::int64_t ns = 0;
    std::vector<std::int64_t> analog;
    std::vector<std::uint8_t> digital;
};

// What a first pass over the chosen streams learns: the rows to come and the
// range of each analog channel's raw values.
struct Survey {
    std::uint64_t rows = 0;
    std::int64_t firstNs = 0;
    std::int64_t lastNs = 0;
    std::vector<std::int64_t> min; // min > max: the channel has no value
    std::vector<std::int64_t> max;
};

// Builds the rows: one per sample of the first chosen SV stream, the other
// SV streams matched to it, the GOOSE entries holding the state in force; or,
// with no SV channel, one row per GOOSE frame.
class RowBuilder {
public:
    // Throws ComtradeError: no channel, no sample in the window, a GOOSE
    // entry that is not a boolean.
    explicit RowBuilder(const ExportRequest& request);
    ~RowBuilder();

    // Reads every chosen SV stream once; throws ComtradeError when their
    // rates differ or when cancelled.
    Survey survey(const ProgressSink& progress);
    Alignment alignment() const { return alignment_; }
    double sampleRate() const;
    // The power system's frequency, as far as the first stream's counters tell.
    int lineFrequency() const;

    void build(const std::function<void(const Row&)>& sink, const ProgressSink& progress);

private:
    struct Slot {
        std::size_t stream = 0;
        std::size_t value = 0;
    };

    void _openSv(const ExportRequest& request);
    void _openGoose(const ExportRequest& request);
    void _chooseAlignment();
    void _buildFromSv(const std::function<void(const Row&)>& sink, const ProgressSink& progress);
    void _buildFromGoose(const std::function<void(const Row&)>& sink);
    void _fillDigital(Row& row);

    std::shared_ptr<TavStream::StreamClocks> clocks_; // the cursors' clocks live in it
    std::vector<std::unique_ptr<SvCursor>> sv_;
    std::vector<Slot> analog_;
    std::vector<std::unique_ptr<GooseTimeline>> goose_;
    std::vector<Slot> digital_;
    std::vector<std::vector<std::uint8_t>> gooseStates_;
    std::vector<std::int64_t> gooseRows_;
    std::vector<bool> synchronised_;
    Alignment alignment_ = Alignment::OneStream;
};

} // namespace TavComtrade
