#include "view/TavNaMenuView.h"

#include "platform/view/HelpView.h"

namespace TavNA {

TavNaMenuView::TavNaMenuView() {
    _initializeView();
}

void TavNaMenuView::setHelpPath(const std::string& path) {
    help = path;
}

void TavNaMenuView::_initializeView() {
    set_hexpand(true);
    set_size_request(-1, 50);
    get_style_context()->add_class("menubar");

    fileMenu.append(openFile);
    fileMenu.append(openScl);
    fileMenu.append(exportComtrade);
    fileTop.set_submenu(fileMenu);
    append(fileTop);

    captureMenu.append(startCapture);
    captureMenu.append(stopCapture);
    captureMenu.append(saveCapture);
    captureTop.set_submenu(captureMenu);
    append(captureTop);

    helpMenu.append(about);
    helpMenu.append(helpDocument);
    helpTop.set_submenu(helpMenu);
    append(helpTop);

    openFile.signal_activate().connect(
        sigc::mem_fun(*this, &TavNaMenuView::_onMenuOpenFileClicked));
    exportComtrade.signal_activate().connect([this] { signalExportClicked.emit(); });
    startCapture.signal_activate().connect([this] { signalStartCaptureClicked.emit(); });
    stopCapture.signal_activate().connect([this] { signalStopCaptureClicked.emit(); });
    saveCapture.signal_activate().connect([this] { signalSaveCaptureClicked.emit(); });
    openScl.signal_activate().connect([this] { signalOpenSclClicked.emit(); });
    about.signal_activate().connect(sigc::mem_fun(*this, &TavNaMenuView::_onMenuAboutClicked));
    helpDocument.signal_activate().connect(
        sigc::mem_fun(*this, &TavNaMenuView::_onMenuHelpClicked));
    show_all();
}

void TavNaMenuView::_onMenuOpenFileClicked() {
    signalOpenFileClicked.emit();
}

void TavNaMenuView::_onMenuAboutClicked() {
    signalAboutClicked.emit();
}

// Help needs nothing of the model, so the view answers it alone.
void TavNaMenuView::_onMenuHelpClicked() {
    Tav::HelpView::show(this, help);
}

} // namespace TavNA
