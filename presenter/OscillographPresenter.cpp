#include "presenter/OscillographPresenter.h"

#include "model/FailureText.h"
#include "platform/common/Log.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <sigc++/functors/mem_fun.h>

namespace TavNA {

using TavIec61850Parser::Package;
using TavIec61850Parser::Timest;

namespace {

std::int64_t nanosecondsOf(const Timest& t) {
    return static_cast<std::int64_t>(t.seconds) * 1'000'000'000 + t.nanoseconds;
}

template <typename Selection>
void erasePair(Selection& selection, typename Selection::value_type entry) {
    selection.erase(std::remove(selection.begin(), selection.end(), entry), selection.end());
}

// Whether the path is the only file of one of the group's streams: that
// stream is gone with the file.
template <typename Group> bool livesOnlyIn(const Group& group, const std::string& path) {
    return std::any_of(group.getRecords().begin(), group.getRecords().end(), [&](auto* record) {
        return record->files.size() == 1 && record->files.begin()->path == path;
    });
}

template <typename Selection> void pruneFile(Selection& selection, const std::string& path) {
    selection.erase(std::remove_if(selection.begin(), selection.end(),
                                   [&](const auto& entry) {
                                       return entry.second != nullptr &&
                                              livesOnlyIn(*entry.second, path);
                                   }),
                    selection.end());
    // The streams' file sets are the database's: the model clears the file
    // from them, after the checks that may be reading them have stopped.
}

} // namespace

OscillographPresenter::OscillographPresenter(TavNaModel& model)
    : view(std::make_unique<OscillographView>()), model(model),
      liveness(Tav::UpdateViewGuard::makeToken()) {
    auto& packages = model.getPackageListModel();
    packages.signalGroupSelected.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onGroupSelected));
    packages.signalSvChannelSelected.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onSvChannelSelected));
    packages.signalSvChannelUnSelected.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onSvChannelUnSelected));
    packages.signalGooseChannelSelected.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onGooseChannelSelected));
    packages.signalGooseChannelUnSelected.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onGooseChannelUnSelected));
    // A rebuild frees the channels the selections point at. A load lets go of
    // them when it begins; a rebuild on the interface thread does so at once.
    packages.signalUpdated.connect(sigc::mem_fun(*this, &OscillographPresenter::_onTreeReplaced));
    model.getLoad().signalBegun.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_dropSelections));

    auto& files = model.getFileManagerModel();
    files.signalAdded.connect(sigc::mem_fun(*this, &OscillographPresenter::_onFileAdded));
    files.signalRemoved.connect(sigc::mem_fun(*this, &OscillographPresenter::_onFileRemoved));
    files.signalBeforeRemoved.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onBeforeFileRemoved));
    files.signalCleared.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onFileManagerUpdated));

    // Worker, inside the load that read the new frames. The model outlives
    // this presenter and the slot stays: it touches nothing of the presenter
    // but what the token lets through.
    model.signalCaptureGrown.connect(
        [this, &load = model.getLoad(), alive = std::weak_ptr(liveness)] {
            load.post(alive, [this] { _followCapture(); });
        });
    view->signalPixelWidthChanged.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onPixelWidthChanged));
    view->signalSeriesRangeChanged.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onSeriesRangeChanged));
    // A summary just built lets a wide window be drawn again from it.
    summaries =
        std::make_unique<TavWaveform::SummaryStore>([token = std::weak_ptr(liveness), this] {
            Tav::UpdateViewGuard::safeBeginUpdateView(token, [this] { _draw(); });
        });
}

// The series belong to the channels, which may outlive this presenter's view
// only by a little; the view must not keep pointers to them.
OscillographPresenter::~OscillographPresenter() {
    view->clearSeries();
}

Tav::IView* OscillographPresenter::getView() {
    return view.get();
}

Timest OscillographPresenter::_getTimestFromSec(double s) {
    if (!(s > 0.0))
        return {};
    const auto seconds = static_cast<std::uint32_t>(std::trunc(s));
    const auto nanoseconds = static_cast<std::uint32_t>((s - seconds) * 1'000'000'000.0);
    return {seconds, std::min(nanoseconds, 999'999'999u)};
}

void OscillographPresenter::_onGroupSelected(const IGroup*) {}

void OscillographPresenter::_onSvChannelSelected(SvChannel* channel, SvGroup* group) {
    svSelection.emplace_back(channel, group);
    _draw();
}

void OscillographPresenter::_onGooseChannelSelected(GooseChannel* channel, GooseGroup* group) {
    gooseSelection.emplace_back(channel, group);
    _draw();
}

// No redraw: the curve just leaves, the others stay as they were drawn.
void OscillographPresenter::_onSvChannelUnSelected(SvChannel* channel, SvGroup* group) {
    view->deleteSeries(&channel->getSerie());
    channel->getSerie().points.clear();
    erasePair(svSelection, {channel, group});
}

void OscillographPresenter::_onGooseChannelUnSelected(GooseChannel* channel, GooseGroup* group) {
    view->deleteSeries(&channel->getSerie());
    channel->getSerie().points.clear();
    erasePair(gooseSelection, {channel, group});
}

void OscillographPresenter::_onFileAdded(FileRecordModel*) {
    _postTimeRangeUpdate();
}

void OscillographPresenter::_onFileRemoved(FileRecordModel*) {
    _postTimeRangeUpdate();
}

void OscillographPresenter::_onFileManagerUpdated() {
    _postTimeRangeUpdate();
}

void OscillographPresenter::_onBeforeFileRemoved(FileRecordModel* record) {
    for (auto it = toldFailures.begin(); it != toldFailures.end();)
        it = it->first == record->fileName ? toldFailures.erase(it) : std::next(it);
    pruneFile(svSelection, record->fileName);
    pruneFile(gooseSelection, record->fileName);
}

// After the first redraw a new width waits for the next range change or tick.
void OscillographPresenter::_onPixelWidthChanged(int) {
    if (!drawnOnce)
        _draw();
}

void OscillographPresenter::_onSeriesRangeChanged(float, float) {
    _draw();
}

void OscillographPresenter::_onTreeReplaced() {
    model.getLoad().deliver(liveness, [this] { _dropSelections(); });
}

void OscillographPresenter::_dropSelections() {
    svSelection.clear();
    gooseSelection.clear();
    view->clearSeries();
    view->showAll();
}

void OscillographPresenter::_postTimeRangeUpdate() {
    model.getLoad().post(liveness, [this] { _updateTimeRange(); });
}

void OscillographPresenter::_updateTimeRange() {
    _measureTimeRange();
    if (model.getOscillographModel().duration > 0.1)
        view->setSeriesRange(0.0, 0.1);
    _draw();
}

// A window that reaches the newest frames keeps doing so as the capture grows,
// with its width; one the user moved away from them stays where it was put.
// Showing the whole capture (Home, a double click) returns to following.
void OscillographPresenter::_followCapture() {
    double from = 0.0;
    double to = 0.0;
    view->getSeriesRange(from, to);
    const double before = model.getOscillographModel().duration;
    const bool atTheEnd = to >= before - 1e-6;
    const bool whole = from <= 1e-6 && atTheEnd;
    _measureTimeRange();
    const double now = model.getOscillographModel().duration;
    if (atTheEnd) {
        const double width = whole || to - from <= 0.0 ? kFollowedSeconds : to - from;
        view->setHorizontalInterval(static_cast<float>(std::max(0.0, now - width)),
                                    static_cast<float>(now));
    }
    _draw();
}

void OscillographPresenter::_measureTimeRange() {
    Timest begin{std::numeric_limits<std::uint32_t>::max(), 0};
    Timest end{0, 0};
    auto widen = [&](const auto& streams) {
        for (const auto& stream : streams)
            for (const auto& file : stream.files) {
                begin = std::min(begin, file.getBeginTime());
                end = std::max(end, file.getEndTime());
            }
    };
    auto& db = model.getDb();
    widen(db.svProto.svs);
    widen(db.gooseProto.gooses);

    auto& range = model.getOscillographModel();
    range.end = end.toSeconds();
    if (begin.seconds == std::numeric_limits<std::uint32_t>::max()) {
        range.start = 0.0;
        range.duration = range.end;
    } else {
        range.start = begin.toSeconds();
        range.duration = std::max(range.end - range.start, 0.0);
    }
    view->setSeriesDuration(static_cast<float>(range.duration));
}

void OscillographPresenter::_draw() {
    drawnOnce = true;
    view->clearSeries();
    const int width = view->getPixelWidth();
    // With no columns to draw on there is nothing worth reading.
    if (width <= 0) {
        view->showAll();
        return;
    }
    Window window;
    view->getSeriesRange(window.from, window.to);
    window.modelStart = model.getOscillographModel().start;
    window.fromStamp = _getTimestFromSec(window.modelStart + window.from);
    window.toStamp = _getTimestFromSec(window.modelStart + window.to);
    window.trace = {nanosecondsOf(window.fromStamp), nanosecondsOf(window.toStamp),
                    static_cast<std::size_t>(width)};

    // Of a group the last stream is drawn.
    TavWaveform::SvBatch svTraces;
    for (const auto& [channel, group] : svSelection)
        if (group != nullptr && !group->getSvs().empty())
            svTraces.want(group->getSvs().back(), channel->getIndex());
    TavWaveform::GooseBatch gooseTraces;
    for (const auto& [channel, group] : gooseSelection)
        if (group != nullptr && !group->getGooses().empty())
            gooseTraces.want(group->getGooses().back(), channel->getIndex());
    svTraces.build(window.trace, window.readFailures, model.getClocks().get(), summaries.get());
    gooseTraces.build(window.trace, window.readFailures);

    _drawSelection(svSelection, window, [&](SvChannel& c, const SvGroup& g, Window& w) {
        _drawTrace(c.getSerie(), svTraces, g.getSvs().back(), c.getIndex(), c.getTransformRatio(),
                   w);
    });
    _drawSelection(gooseSelection, window, [&](GooseChannel& c, const GooseGroup& g, Window& w) {
        _drawTrace(c.getSerie(), gooseTraces, g.getGooses().back(), c.getIndex(), 1.0f, w);
    });
    view->showAll();
    _tellReadFailures(window);
}

// Once per file and reason, not once per redraw: a file that went away stays
// gone for every scroll that follows.
void OscillographPresenter::_tellReadFailures(const Window& window) {
    for (const auto& failure : window.readFailures) {
        if (!toldFailures.insert(failure).second)
            continue;
        TavLog::Log::writeError("Не удалось перечитать кадры для осциллографа: " + failure.first +
                                ": " + failure.second);
        model.signalMessage.emit(3,
                                 FailureText::unreadableForDrawing(failure.first, failure.second));
    }
}

template <typename Selection, typename DrawOne>
void OscillographPresenter::_drawSelection(Selection& selection, Window& window, DrawOne drawOne) {
    std::uint32_t ordinal = 0;
    for (const auto& [channel, group] : selection) {
        Tav::Series& serie = channel->getSerie();
        serie.points.clear();
        serie.ordinal = ordinal++;
        if (group == nullptr || group->getRecords().empty())
            continue;
        drawOne(*channel, *group, window);
        serie.points.shrink_to_fit();
        view->addSeries(&serie);
        serie.signalPointsChanged.emit();
        serie.signalChanged.emit();
    }
}

// Points count from the window's left edge, which becomes the series'
// origin: a 32-bit x then keeps sample precision at any distance from the
// start.
template <typename Record, typename Builder>
void OscillographPresenter::_drawTrace(Tav::Series& serie,
                                       const TavWaveform::TraceBatch<Record, Builder>& batch,
                                       const Record* stream, std::size_t index, float ratio,
                                       const Window& window) {
    bool envelope = false;
    const auto* trace = batch.points(stream, index, envelope);
    serie.origin = window.from;
    serie.envelope = envelope;
    if (trace == nullptr)
        return;
    serie.points.reserve(trace->size());
    for (const auto& p : *trace)
        serie.points.push_back(
            {static_cast<float>(static_cast<double>(p.ns - window.trace.fromNs) * 1e-9),
             p.value * ratio});
}

} // namespace TavNA
