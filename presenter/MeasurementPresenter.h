#pragma once

#include "job/BackgroundJob.h"
#include "measure/Measure.h"
#include "model/SvGroup.h"
#include "model/TavNaModel.h"
#include "platform/view/IPresenter.h"
#include "platform/view/UpdateViewGuard.h"
#include "presenter/MeasurementSheet.h"
#include "view/MeasurementView.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <sigc++/connection.h>
#include <string>
#include <utility>
#include <vector>

namespace TavNA {

class IGroup;
class OscillographPresenter;

// Measures the picked SV stream, and the ticked channels of others, over the
// whole cycles of the plot's visible window, following every zoom and pan:
// a window of up to a second at once, a longer one on a background job whose
// stale results are dropped. The job is stopped before anything changes the
// database it reads.
class MeasurementPresenter : public Tav::IPresenter {
public:
    MeasurementPresenter(TavNaModel& model, OscillographPresenter& scope);
    MeasurementPresenter(const MeasurementPresenter&) = delete;
    MeasurementPresenter& operator=(const MeasurementPresenter&) = delete;
    ~MeasurementPresenter() override;

    Tav::IView* getView() override { return view.get(); }
    MeasurementView& getViewObj() { return *view; }
    // True while a long window is measured in the background.
    bool isMeasuring() const { return measuring; }

private:
    // A stream and the channels of it that are measured.
    struct Target {
        const TavIec61850Parser::Sv* stream = nullptr;
        std::vector<TavMeasure::ChannelSpec> channels;
    };

    void _onGroupSelected(const IGroup* group);
    void _schedule();
    void _measure();
    void _stop();
    std::vector<TavMeasure::ChannelSpec> _channels(const TavIec61850Parser::Sv& stream) const;
    std::vector<Target> _targets() const;
    std::pair<std::int64_t, std::int64_t> _window() const;
    std::optional<TavMeasure::ChannelRef> _reference(const std::vector<Target>& targets);
    void _show(const std::vector<TavMeasure::StreamMeasurement>& measured);
    void _showHarmonics();
    void _showNothing(const std::string& why);

    TavNaModel& model;
    OscillographPresenter& scope;
    std::unique_ptr<MeasurementView> view;
    const SvGroup* picked = nullptr;
    std::optional<std::string> chosenReference; // by name, kept while it is offered
    std::string chosenHarmonics;
    MeasurementSheet sheet;
    bool scheduled = false;
    bool measuring = false;
    bool showsNothing = false;
    std::vector<sigc::connection> connections;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> liveness;
    // Last: destroyed first, so that its work is joined while the rest lives.
    std::unique_ptr<TavJob::BackgroundJob> job;
};

} // namespace TavNA
