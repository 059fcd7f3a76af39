#include "comtrade/RowBuilder.h"

#include "comtrade/ComtradeError.h"
#include "comtrade/SvAligner.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

namespace TavComtrade {

using Kind = ComtradeError::Kind;

namespace {

// Each stream once, in the order first chosen, with its chosen entries; and
// for each choice, its stream and its place among that stream's entries.
template <typename Choice>
auto streamsOf(const std::vector<Choice>& choices, std::vector<std::vector<std::size_t>>& indices,
               std::vector<std::pair<std::size_t, std::size_t>>& places) {
    std::vector<decltype(choices.front().stream)> streams;
    for (const auto& choice : choices) {
        auto it = std::find(streams.begin(), streams.end(), choice.stream);
        const auto s = static_cast<std::size_t>(it - streams.begin());
        if (it == streams.end()) {
            streams.push_back(choice.stream);
            indices.emplace_back();
        }
        places.emplace_back(s, indices[s].size());
        indices[s].push_back(choice.index);
    }
    return streams;
}

constexpr double kSameSampleNs = 20e6;

bool cancelled(const ProgressSink& progress, double share) {
    return progress && !progress(share);
}

} // namespace

RowBuilder::RowBuilder(const ExportRequest& request) {
    if (request.analog.empty() && request.digital.empty())
        throw ComtradeError(Kind::NoChannel, "no channel chosen");
    _openSv(request);
    _openGoose(request);
    if (!sv_.empty() && sv_.front()->empty())
        throw ComtradeError(Kind::NoSample,
                            "no sample of " + sv_.front()->stream().svId + " in the window",
                            sv_.front()->stream().svId);
    if (sv_.empty() && gooseRows_.empty())
        throw ComtradeError(Kind::NoSample, "no GOOSE frame in the window");
}

RowBuilder::~RowBuilder() = default;

void RowBuilder::_openSv(const ExportRequest& request) {
    std::vector<std::vector<std::size_t>> indices;
    std::vector<std::pair<std::size_t, std::size_t>> places;
    const auto streams = streamsOf(request.analog, indices, places);
    clocks_ = request.clocks ? request.clocks : std::make_shared<TavStream::StreamClocks>(streams);
    for (std::size_t s = 0; s < streams.size(); ++s)
        sv_.push_back(std::make_unique<SvCursor>(*streams[s], request.from, request.to, indices[s],
                                                 clocks_->of(*streams[s])));
    for (const auto& [stream, value] : places)
        analog_.push_back({stream, value});
}

void RowBuilder::_openGoose(const ExportRequest& request) {
    std::vector<std::vector<std::size_t>> indices;
    std::vector<std::pair<std::size_t, std::size_t>> places;
    const auto streams = streamsOf(request.digital, indices, places);
    std::string notBoolean;
    for (std::size_t s = 0; s < streams.size(); ++s) {
        goose_.push_back(
            std::make_unique<GooseTimeline>(*streams[s], request.from, request.to, indices[s]));
        gooseStates_.emplace_back(indices[s].size(), 0);
        const auto times = goose_.back()->frameTimes();
        gooseRows_.insert(gooseRows_.end(), times.begin(), times.end());
        if (times.empty() && !goose_.back()->timeBefore())
            continue; // nothing known, so nothing to judge the entries by
        for (const std::size_t k : goose_.back()->nonBoolean())
            notBoolean += (notBoolean.empty() ? "" : ", ") + std::to_string(indices[s][k] + 1) +
                          " | " + streams[s]->goId;
    }
    for (const auto& [stream, value] : places)
        digital_.push_back({stream, value});
    if (!notBoolean.empty())
        throw ComtradeError(Kind::NotBoolean,
                            "GOOSE entries that are not booleans cannot be digital channels: " +
                                notBoolean,
                            notBoolean);
    // With no SV stream the record starts where the window does when the
    // state in force there is known.
    if (request.from && std::any_of(goose_.begin(), goose_.end(),
                                    [](const auto& g) { return g->timeBefore().has_value(); }))
        gooseRows_.push_back(toNanoseconds(*request.from));
    std::sort(gooseRows_.begin(), gooseRows_.end());
    gooseRows_.erase(std::unique(gooseRows_.begin(), gooseRows_.end()), gooseRows_.end());
}

double RowBuilder::sampleRate() const {
    return sv_.empty() ? 0.0 : sv_.front()->clock().rateHz();
}

int RowBuilder::lineFrequency() const {
    return sv_.empty() ? 50 : sv_.front()->clock().nominalHz();
}

Survey RowBuilder::survey(const ProgressSink& progress) {
    Survey survey;
    survey.min.assign(analog_.size(), std::numeric_limits<std::int64_t>::max());
    survey.max.assign(analog_.size(), std::numeric_limits<std::int64_t>::min());
    std::vector<std::vector<std::int64_t>> low(sv_.size()), high(sv_.size());
    synchronised_.assign(sv_.size(), true);
    std::size_t framesBefore = 0, framesAll = 0;
    for (const auto& cursor : sv_)
        framesAll += cursor->frameCount();
    for (std::size_t s = 0; s < sv_.size(); ++s) {
        SvCursor& cursor = *sv_[s];
        cursor.rewind();
        SvSample sample;
        std::uint64_t count = 0;
        for (; cursor.next(sample); ++count) {
            if (s == 0)
                survey.lastNs = sample.ns;
            if (s == 0 && count == 0)
                survey.firstNs = sample.ns;
            synchronised_[s] = synchronised_[s] && sample.synchronised;
            low[s].resize(sample.values.size(), std::numeric_limits<std::int64_t>::max());
            high[s].resize(sample.values.size(), std::numeric_limits<std::int64_t>::min());
            for (std::size_t v = 0; v < sample.values.size(); ++v) {
                if (sample.values[v] == kMissing)
                    continue;
                low[s][v] = std::min(low[s][v], sample.values[v]);
                high[s][v] = std::max(high[s][v], sample.values[v]);
            }
            if (count % 4096 == 0 &&
                cancelled(progress, static_cast<double>(framesBefore + cursor.framesRead()) /
                                        static_cast<double>(framesAll)))
                throw ComtradeError(Kind::Cancelled, "export cancelled");
        }
        framesBefore += cursor.frameCount();
        if (s == 0)
            survey.rows = count;
    }
    for (std::size_t c = 0; c < analog_.size(); ++c) {
        const auto& [s, v] = analog_[c];
        if (v < low[s].size()) {
            survey.min[c] = low[s][v];
            survey.max[c] = high[s][v];
        }
    }
    if (sv_.empty()) {
        survey.rows = gooseRows_.size();
        survey.firstNs = gooseRows_.front();
        survey.lastNs = gooseRows_.back();
    }
    _chooseAlignment();
    return survey;
}

void RowBuilder::_chooseAlignment() {
    if (sv_.empty()) {
        alignment_ = Alignment::GooseOnly;
        return;
    }
    if (sv_.size() == 1) {
        alignment_ = Alignment::OneStream;
        return;
    }
    std::ostringstream rates;
    bool differ = false;
    const double first = sv_.front()->clock().rateHz();
    for (const auto& cursor : sv_) {
        const double rate = cursor->clock().rateHz();
        rates << (&cursor == &sv_.front() ? "" : ", ") << cursor->stream().svId << " at "
              << std::llround(rate) << " Hz";
        if (first > 0 && rate > 0 && std::abs(rate / first - 1.0) > 1e-3)
            differ = true;
    }
    if (differ)
        throw ComtradeError(
            Kind::RatesDiffer,
            "SV streams of different sample rates cannot be aligned: " + rates.str(), rates.str());
    const bool allSynchronised =
        std::all_of(synchronised_.begin(), synchronised_.end(), [](bool s) { return s; });
    alignment_ = allSynchronised ? Alignment::SampleCounter : Alignment::NearestTime;
}

void RowBuilder::build(const std::function<void(const Row&)>& sink, const ProgressSink& progress) {
    for (auto& timeline : goose_)
        timeline->rewind();
    if (sv_.empty())
        _buildFromGoose(sink);
    else
        _buildFromSv(sink, progress);
}

void RowBuilder::_buildFromSv(const std::function<void(const Row&)>& sink,
                              const ProgressSink& progress) {
    SvCursor& master = *sv_.front();
    master.rewind();
    // Synchronised publishers send a sample of one smpCnt within a few
    // milliseconds of each other, well inside the second that smpCnt wraps
    // in; a nearest sample further off than half an interval belongs to no row.
    const double interval = master.clock().intervalNs() > 0 ? master.clock().intervalNs() : 1e6;
    const bool byCounter = alignment_ == Alignment::SampleCounter;
    std::vector<std::unique_ptr<SvAligner>> others;
    for (std::size_t s = 1; s < sv_.size(); ++s)
        others.push_back(std::make_unique<SvAligner>(*sv_[s], byCounter,
                                                     byCounter ? kSameSampleNs : interval / 2));
    std::vector<const SvSample*> matched(sv_.size(), nullptr);
    Row row;
    row.analog.resize(analog_.size());
    row.digital.resize(digital_.size());
    SvSample sample;
    for (std::uint64_t n = 0; master.next(sample); ++n) {
        row.ns = sample.ns;
        matched[0] = &sample;
        for (std::size_t s = 1; s < sv_.size(); ++s)
            matched[s] = others[s - 1]->match(sample.ns, sample.smpCnt);
        for (std::size_t c = 0; c < analog_.size(); ++c) {
            const SvSample* from = matched[analog_[c].stream];
            row.analog[c] = from != nullptr ? from->values[analog_[c].value] : kMissing;
        }
        _fillDigital(row);
        sink(row);
        if (n % 4096 == 0 && cancelled(progress, static_cast<double>(master.framesRead()) /
                                                     static_cast<double>(master.frameCount())))
            throw ComtradeError(Kind::Cancelled, "export cancelled");
    }
}

void RowBuilder::_buildFromGoose(const std::function<void(const Row&)>& sink) {
    Row row;
    row.digital.resize(digital_.size());
    for (const std::int64_t ns : gooseRows_) {
        row.ns = ns;
        _fillDigital(row);
        sink(row);
    }
}

void RowBuilder::_fillDigital(Row& row) {
    for (std::size_t g = 0; g < goose_.size(); ++g)
        goose_[g]->stateAt(row.ns, gooseStates_[g], 0);
    for (std::size_t d = 0; d < digital_.size(); ++d)
        row.digital[d] = gooseStates_[digital_[d].stream][digital_[d].value];
}

} // namespace TavComtrade
