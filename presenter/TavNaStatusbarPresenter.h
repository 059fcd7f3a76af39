#pragma once

#include "platform/view/IPresenter.h"
#include "platform/view/UpdateViewGuard.h"

#include <memory>
#include <string>

namespace TavNA {

class CapturePresenter;
class CurrentLoad;
class TavNaModel;
class TavNaStatusbarView;

// Progress and mode of the capture model. Progress and the end of a parse
// arrive on the parse worker; they reach the bar only through the interface
// thread's queue.
class TavNaStatusbarPresenter : public Tav::IPresenter {
public:
    explicit TavNaStatusbarPresenter(TavNaModel& model);
    ~TavNaStatusbarPresenter() override;

    Tav::IView* getView() override;
    // ETHERNET mode's capture, which the bar starts and stops.
    CapturePresenter& getCapturePresenter() { return *capturePresenter; }

    void updateProgress(double value);
    // Called on the interface thread, when the parse starts.
    void onBeforeOpenFile(const std::string& path);
    void onAfterOpenFile(const std::string& path);
    void reset();
    void setMode(const std::string& mode);
    void showProgress(bool visible);

private:
    void _onCancelLoad();
    void _onModeSwitched(bool active);
    void _onModeChanged();
    void _onLoadRetired();
    // No file, no progress, no cancel: after an open ends and after a reset.
    static void _showIdle(TavNaStatusbarView* bar);
    // Callable on the worker: the view is touched only by the posted work.
    static void _postProgress(CurrentLoad& load,
                              const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive,
                              TavNaStatusbarView* bar, double value);
    static void _postOpenFinished(CurrentLoad& load,
                                  const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive,
                                  TavNaStatusbarView* bar);

    std::unique_ptr<TavNaStatusbarView> view;
    TavNaModel& model;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> aliveToken;
    std::unique_ptr<CapturePresenter> capturePresenter;
};

} // namespace TavNA
