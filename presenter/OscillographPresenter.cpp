#include "presenter/OscillographPresenter.h"

#include "model/FailureText.h"
#include "platform/common/Log.h"
#include "platform/parser/GooseParser.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/SvParser.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <sigc++/functors/mem_fun.h>

namespace TavNA {

using TavIec61850Parser::Package;
using TavIec61850Parser::Timest;

namespace {

// A whole-number stride over the packages of the window, so that a series
// never gets as many as twice the budget.
std::size_t strideFor(std::size_t total, std::size_t budget) {
    return budget < total ? total / budget : 1;
}

double relativeTime(const Package& p, double modelStart) {
    return p.time.nanoseconds / 1'000'000'000.0 + p.time.seconds - modelStart;
}

std::optional<float> readGooseValue(const std::string& path, std::uint64_t offset,
                                    std::uint64_t index) {
    using TavIec61850Parser::GooseParser;
    const auto pdu = GooseParser::parseGoosePDUFromFile(path, offset);
    const auto values = GooseParser::parseBooleanValues(pdu.data);
    if (index >= values.size())
        return std::nullopt;
    return values[index];
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
    for (const auto& [channel, group] : selection) {
        if (group == nullptr)
            continue;
        // The streams' own file sets are edited here, ahead of the database,
        // so that the next window query already leaves the file out.
        for (const auto* record : group->getRecords())
            if (record->files.size() > 1)
                record->files.erase(TavIec61850Parser::PackageFile(path));
    }
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

    view->signalPixelWidthChanged.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onPixelWidthChanged));
    view->signalSeriesRangeChanged.connect(
        sigc::mem_fun(*this, &OscillographPresenter::_onSeriesRangeChanged));
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
    if (range.duration > 0.1)
        view->setSeriesRange(0.0, 0.1);
    _draw();
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
    window.budget = 2 * static_cast<std::size_t>(width);
    view->getSeriesRange(window.from, window.to);
    window.modelStart = model.getOscillographModel().start;
    window.fromStamp = _getTimestFromSec(window.modelStart + window.from);
    window.toStamp = _getTimestFromSec(window.modelStart + window.to);

    _drawSelection(svSelection, window,
                   [this](SvChannel& c, const SvGroup& g, Window& w) { _drawSv(c, g, w); });
    _drawSelection(gooseSelection, window, [this](GooseChannel& c, const GooseGroup& g, Window& w) {
        _drawGoose(c, g, w);
    });
    view->showAll();
    _tellReadFailures(window);
}

void OscillographPresenter::_noteReadFailure(Window& window, const std::string& path,
                                             const std::exception& error) {
    const auto* parseError = dynamic_cast<const TavIec61850Parser::ParseError*>(&error);
    window.readFailures.emplace(path, parseError != nullptr ? parseError->reason() : error.what());
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

void OscillographPresenter::_drawSv(SvChannel& channel, const SvGroup& group, Window& window) {
    const auto result =
        group.getSvs().back()->getfilteredPackages(window.fromStamp, window.toStamp);
    std::size_t total = 0;
    for (const auto& [file, packages] : result)
        total += packages.size();
    const std::size_t step = strideFor(total, window.budget);
    const auto index = channel.getIndex();
    const float ratio = channel.getTransformRatio();
    auto& points = channel.getSerie().points;
    std::vector<std::uint64_t> offsets;
    for (const auto& entry : result) {
        const auto& packages = entry.second;
        offsets.clear();
        for (std::size_t i = 0; i < packages.size(); i += step)
            offsets.push_back(packages[i]->offset);
        // One check of the file for all of its frames in the window; each
        // frame is still read from the file itself.
        try {
            TavIec61850Parser::SvParser::parseASDUsFromFile(
                entry.first->path, offsets,
                [&](std::size_t k, std::vector<TavIec61850Parser::ASDUData>& asdus) {
                    if (asdus.empty() || index >= asdus.front().values.size())
                        return;
                    const Package& p = *packages[k * step];
                    const float y = static_cast<float>(asdus.front().values[index].value) * ratio;
                    points.push_back({static_cast<float>(relativeTime(p, window.modelStart)), y});
                });
        } catch (const std::exception& error) {
            // A file that changed or went away stays so for the rest of it.
            _noteReadFailure(window, entry.first->path, error);
        }
    }
}

void OscillographPresenter::_drawGoose(GooseChannel& channel, const GooseGroup& group,
                                       Window& window) {
    const auto result =
        group.getGooses().back()->getfilteredPackages(window.fromStamp, window.toStamp);
    std::size_t total = 0;
    for (const auto& [file, filtered] : result)
        total += filtered.packages.size();
    const std::size_t step = strideFor(total, window.budget);
    const auto index = channel.getIndex();
    auto& points = channel.getSerie().points;
    auto read = [&](const std::string& path, const Package& p) -> std::optional<float> {
        try {
            return readGooseValue(path, p.offset, index);
        } catch (const std::exception& error) {
            _noteReadFailure(window, path, error);
            throw;
        }
    };
    for (const auto& [file, filtered] : result) {
        try {
            for (std::size_t i = 0; i < filtered.packages.size(); i += step) {
                const Package& p = *filtered.packages[i];
                if (const auto value = read(file->path, p))
                    points.push_back(
                        {static_cast<float>(relativeTime(p, window.modelStart)), *value});
            }
        } catch (const std::exception&) {
        }
    }
    if (result.empty())
        return;
    // The step curve spans the whole window: the state in force before it from
    // the left edge, the last known state up to the right edge.
    const auto& [firstFile, first] = *result.begin();
    std::optional<float> before;
    if (first.lastBefore != nullptr && (points.empty() || points.back().x > window.from)) {
        try {
            before = read(firstFile->path, *first.lastBefore);
        } catch (const std::exception&) {
        }
    }
    if (!points.empty()) {
        if (before)
            points.insert(points.begin(), {static_cast<float>(window.from), *before});
        points.push_back({static_cast<float>(window.to), points.back().y});
    } else if (before) {
        points.push_back({static_cast<float>(window.from), *before});
        points.push_back({static_cast<float>(window.to), *before});
    }
}

} // namespace TavNA
