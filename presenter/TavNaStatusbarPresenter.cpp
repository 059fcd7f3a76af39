#include "presenter/TavNaStatusbarPresenter.h"

#include "model/TavNaModel.h"
#include "presenter/CapturePresenter.h"
#include "view/TavNaStatusbarView.h"

namespace TavNA {

TavNaStatusbarPresenter::TavNaStatusbarPresenter(TavNaModel& model)
    : view(std::make_unique<TavNaStatusbarView>()), model(model),
      aliveToken(Tav::UpdateViewGuard::makeToken()) {
    // The worker's signals are followed by slots that are never cut and never
    // touch this presenter themselves: a cut while the worker emits would race
    // it, and the presenter may already be gone when a late emission comes.
    // Only the work they post, which the token guards, reaches the view.
    const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken> alive = aliveToken;
    TavNaStatusbarView* bar = view.get();
    CurrentLoad& load = model.getLoad();
    model.signalProgress.connect(
        [&load, alive, bar](double value) { _postProgress(load, alive, bar, value); });
    model.signalParseFinished.connect(
        [&load, alive, bar](const std::string&) { _postOpenFinished(load, alive, bar); });
    model.signalParseStarted.connect(
        sigc::mem_fun(*this, &TavNaStatusbarPresenter::onBeforeOpenFile));
    model.signalModeChanged.connect(sigc::mem_fun(*this, &TavNaStatusbarPresenter::_onModeChanged));
    // A reset drops the end of the open that the stopped worker posted.
    load.signalRetired.connect(sigc::mem_fun(*this, &TavNaStatusbarPresenter::_onLoadRetired));
    view->signalCancelLoad.connect(sigc::mem_fun(*this, &TavNaStatusbarPresenter::_onCancelLoad));
    view->signalModeSwitched.connect(
        sigc::mem_fun(*this, &TavNaStatusbarPresenter::_onModeSwitched));
    capturePresenter = std::make_unique<CapturePresenter>(model, view->captureBar(), view.get());
    _onModeChanged();
}

TavNaStatusbarPresenter::~TavNaStatusbarPresenter() = default;

Tav::IView* TavNaStatusbarPresenter::getView() {
    return view.get();
}

void TavNaStatusbarPresenter::updateProgress(double value) {
    _postProgress(model.getLoad(), aliveToken, view.get(), value);
}

void TavNaStatusbarPresenter::onBeforeOpenFile(const std::string& path) {
    view->setFileName(path);
    view->showProgress(true);
    view->showCancelLoadButton(true);
}

void TavNaStatusbarPresenter::onAfterOpenFile(const std::string&) {
    _postOpenFinished(model.getLoad(), aliveToken, view.get());
}

// Progress and the end of an earlier load must not reach the bar of a later one.
void TavNaStatusbarPresenter::_postProgress(
    CurrentLoad& load, const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive,
    TavNaStatusbarView* bar, double value) {
    load.post(alive, [bar, value] { bar->updateProgress(value); });
}

void TavNaStatusbarPresenter::_postOpenFinished(
    CurrentLoad& load, const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive,
    TavNaStatusbarView* bar) {
    load.post(alive, [bar] { _showIdle(bar); });
}

void TavNaStatusbarPresenter::_onLoadRetired() {
    _showIdle(view.get());
}

void TavNaStatusbarPresenter::_showIdle(TavNaStatusbarView* bar) {
    bar->setFileName("");
    bar->showProgress(false);
    bar->showCancelLoadButton(false);
}

void TavNaStatusbarPresenter::reset() {
    view->reset();
}

void TavNaStatusbarPresenter::setMode(const std::string& mode) {
    view->setMode(mode);
}

void TavNaStatusbarPresenter::showProgress(bool visible) {
    view->showProgress(visible);
}

// The bar goes only when the model reports the end of the open.
void TavNaStatusbarPresenter::_onCancelLoad() {
    model.stopParsing();
}

void TavNaStatusbarPresenter::_onModeSwitched(bool active) {
    if (active)
        model.setEthernetMode();
    else
        model.setPcapMode();
}

void TavNaStatusbarPresenter::_onModeChanged() {
    switch (model.getMode()) {
    case Mode::Pcap:
        view->setMode("PCAP");
        break;
    case Mode::Ethernet:
        view->setMode("ETHERNET");
        break;
    default:
        break;
    }
    view->showCapture(model.getMode() == Mode::Ethernet);
    if (capturePresenter)
        capturePresenter->onModeChanged();
}

} // namespace TavNA
