#pragma once

#include "model/GooseGroup.h"
#include "model/SvGroup.h"
#include "model/TavNaModel.h"
#include "platform/parser/Timest.h"
#include "platform/view/IPresenter.h"
#include "platform/view/UpdateViewGuard.h"
#include "view/OscillographView.h"
#include "waveform/SummaryStore.h"
#include "waveform/TraceBatch.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace TavNA {

// Draws the ticked channels over the visible window, reading the window's
// frames from their capture files again on every redraw (every sample, or a
// min/max envelope per column where they do not fit), and keeps the time
// range of the open files.
class OscillographPresenter : public Tav::IPresenter {
public:
    using SvSelection = std::vector<std::pair<SvChannel*, SvGroup*>>;
    using GooseSelection = std::vector<std::pair<GooseChannel*, GooseGroup*>>;

    explicit OscillographPresenter(TavNaModel& model);
    OscillographPresenter(const OscillographPresenter&) = delete;
    OscillographPresenter& operator=(const OscillographPresenter&) = delete;
    ~OscillographPresenter() override;

    Tav::IView* getView() override;
    OscillographView& getViewObj() { return *view; }
    const SvSelection& getSvSelection() const { return svSelection; }
    const GooseSelection& getGooseSelection() const { return gooseSelection; }

    static TavIec61850Parser::Timest _getTimestFromSec(double s);

private:
    // What one redraw needs to know of the window.
    struct Window {
        double from = 0.0; // seconds after the model's start
        double to = 0.0;
        double modelStart = 0.0;
        TavIec61850Parser::Timest fromStamp;
        TavIec61850Parser::Timest toStamp;
        TavWaveform::TraceWindow trace;
        TavWaveform::ReadFailures readFailures;
    };

    void _onGroupSelected(const IGroup* group);
    void _onSvChannelSelected(SvChannel* channel, SvGroup* group);
    void _onSvChannelUnSelected(SvChannel* channel, SvGroup* group);
    void _onGooseChannelSelected(GooseChannel* channel, GooseGroup* group);
    void _onGooseChannelUnSelected(GooseChannel* channel, GooseGroup* group);
    void _onFileAdded(FileRecordModel* record);
    void _onFileRemoved(FileRecordModel* record);
    void _onBeforeFileRemoved(FileRecordModel* record);
    void _onFileManagerUpdated();
    void _onPixelWidthChanged(int width);
    void _onSeriesRangeChanged(float from, float to);
    void _onTreeReplaced();
    void _tellReadFailures(const Window& window);

    void _postTimeRangeUpdate();
    void _updateTimeRange();
    void _measureTimeRange();
    void _followCapture();
    // How much of a growing capture the plot shows when it follows it.
    static constexpr double kFollowedSeconds = 2.0;
    void _dropSelections();
    void _draw();
    template <typename Record, typename Builder>
    static void
    _drawTrace(Tav::Series& serie, const TavWaveform::TraceBatch<Record, Builder>& batch,
               const Record* stream, std::size_t index, float ratio, const Window& window);
    template <typename Selection, typename DrawOne>
    void _drawSelection(Selection& selection, Window& window, DrawOne drawOne);

    SvSelection svSelection;
    GooseSelection gooseSelection;
    std::unique_ptr<OscillographView> view;
    TavNaModel& model;
    bool drawnOnce = false;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> liveness;
    // Each file and reason the user was told of, so a redraw does not tell again.
    TavWaveform::ReadFailures toldFailures;
    // Last: destroyed first, so its worker is joined while the rest still lives.
    std::unique_ptr<TavWaveform::SummaryStore> summaries;
};

} // namespace TavNA
