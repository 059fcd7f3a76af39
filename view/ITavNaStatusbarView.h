#pragma once

#include "platform/view/IView.h"

#include <sigc++/signal.h>
#include <string>

namespace TavNA {

// The strip under the window: loading progress with a cancel button, and the
// working mode with a switch.
class ITavNaStatusbarView : public Tav::IView {
public:
    sigc::signal<void(bool)> signalModeSwitched; // the switch's new active state
    sigc::signal<void()> signalCancelLoad;

    virtual void showProgress(bool visible) = 0;
    virtual void showCancelLoadButton(bool visible) = 0;
    virtual void updateProgress(double fraction) = 0;
    virtual void setFileName(const std::string& path) = 0;
    // Never reports a mode switch: only the user's own switching does.
    virtual void setMode(const std::string& mode) = 0;
    virtual void reset() = 0;
};

} // namespace TavNA
