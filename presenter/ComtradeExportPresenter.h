#pragma once

#include "comtrade/ComtradeError.h"
#include "comtrade/ExportRequest.h"
#include "job/BackgroundJob.h"
#include "platform/view/IView.h"
#include "platform/view/UpdateViewGuard.h"

#include <atomic>
#include <memory>
#include <optional>
#include <string>

namespace TavNA {

class TavNaModel;
class OscillographPresenter;
class ExportProgressView;

// Exports the ticked channels over the oscillograph's visible window: asks
// where to, writes on a worker while a modal window shows how far it has come
// (the main window keeps drawing but takes no clicks, so nothing the worker
// reads can change), then says where the files went or why they did not.
class ComtradeExportPresenter {
public:
    ComtradeExportPresenter(TavNaModel& model, Tav::IView* parent);
    ComtradeExportPresenter(const ComtradeExportPresenter&) = delete;
    ComtradeExportPresenter& operator=(const ComtradeExportPresenter&) = delete;
    // Stops a running export and waits for it.
    ~ComtradeExportPresenter();

    // The oscillograph whose ticks and window are exported; replaced with
    // the panels on every mode change.
    void setOscillograph(OscillographPresenter* presenter) { oscillograph = presenter; }
    void start();
    bool isRunning() const { return job->running(); }
    ExportProgressView& getProgressView() { return *progress; }

private:
    struct Outcome {
        std::optional<TavComtrade::ExportResult> result;
        std::optional<TavComtrade::ComtradeError> error;
        std::string otherError;
    };

    std::optional<TavComtrade::ExportRequest> _request();
    void _run(const std::string& base, TavComtrade::ExportRequest request);
    void _onFinished(const Outcome& outcome);
    void _tell(const std::string& message, const std::string& detail, bool failed);

    TavNaModel& model;
    Tav::IView* parent;
    OscillographPresenter* oscillograph = nullptr;
    std::unique_ptr<ExportProgressView> progress;
    std::atomic<int> shownPercent{-1};
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> alive;
    // Last: it goes first, joining what runs while the rest still lives.
    std::unique_ptr<TavJob::BackgroundJob> job;
};

// What the window says of a failed export.
std::string exportFailureText(const TavComtrade::ComtradeError& error);

} // namespace TavNA
