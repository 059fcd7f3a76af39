#include "presenter/TavNaMenuPresenter.h"

#include "model/TavNaModel.h"
#include "platform/common/Language.h"
#include "platform/view/AboutWindowActivatorPresenter.h"
#include "platform/view/FileDialogPresenter.h"
#include "presenter/CapturePresenter.h"
#include "presenter/ComtradeExportPresenter.h"
#include "presenter/SclOpenPresenter.h"
#include "view/TavNaMenuView.h"

namespace TavNA {

TavNaMenuPresenter::TavNaMenuPresenter(TavNaModel& model)
    : view(std::make_unique<TavNaMenuView>()), model(model),
      exporter(std::make_unique<ComtradeExportPresenter>(model, view.get())),
      sclOpener(std::make_unique<SclOpenPresenter>(model, view.get())) {
    view->setHelpPath(helpPath());
    view->signalOpenFileClicked.connect(
        sigc::mem_fun(*this, &TavNaMenuPresenter::_onMenuOpenFileClicked));
    view->signalExportClicked.connect([this] { exporter->start(); });
    view->signalStartCaptureClicked.connect([this] {
        if (capture != nullptr)
            capture->start();
    });
    view->signalStopCaptureClicked.connect([this] {
        if (capture != nullptr)
            capture->stop();
    });
    view->signalSaveCaptureClicked.connect([this] {
        if (capture != nullptr)
            capture->save();
    });
    view->signalOpenSclClicked.connect([this] { sclOpener->start(); });
    view->signalAboutClicked.connect(
        sigc::mem_fun(*this, &TavNaMenuPresenter::_onMenuAboutClicked));
}

TavNaMenuPresenter::~TavNaMenuPresenter() = default;

Tav::IView* TavNaMenuPresenter::getView() {
    return view.get();
}

void TavNaMenuPresenter::setOscillograph(OscillographPresenter* presenter) {
    exporter->setOscillograph(presenter);
}

// The document keeps one name in every language; only its folder differs.
std::string TavNaMenuPresenter::helpPath() {
    return "Help/" + lng::languageName() + "/" + "Главное окно программы" + ".pdf";
}

void TavNaMenuPresenter::_onMenuOpenFileClicked() {
    // Frames come from the wire in that mode; there is nothing to open.
    if (model.getMode() == Mode::Ethernet)
        return;
    const std::string path = Tav::FileDialogPresenter::show(
        view.get(), "открыть PCAP файл", {{"pcap file (*.pcap)", "*.pcap"}}, false);
    if (!path.empty())
        model.parseFile(path);
}

void TavNaMenuPresenter::_onMenuAboutClicked() {
    Tav::AboutWindowActivatorPresenter::show(view.get(), "Сетевой Анализатор", "1.0.0");
}

} // namespace TavNA
