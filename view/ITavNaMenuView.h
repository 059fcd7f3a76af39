#pragma once

#include "platform/view/IView.h"

#include <sigc++/signal.h>
#include <string>

namespace TavNA {

// The menu bar: opening a capture or the substation's configuration,
// exporting channels, live capture, the help document and the about box.
class ITavNaMenuView : public Tav::IView {
public:
    sigc::signal<void()> signalOpenFileClicked;
    sigc::signal<void()> signalExportClicked;
    sigc::signal<void()> signalOpenSclClicked;
    sigc::signal<void()> signalAboutClicked;
    sigc::signal<void()> signalStartCaptureClicked;
    sigc::signal<void()> signalStopCaptureClicked;
    sigc::signal<void()> signalSaveCaptureClicked;

    // The document the help item opens, relative to the working folder.
    virtual void setHelpPath(const std::string& path) = 0;
};

} // namespace TavNA
