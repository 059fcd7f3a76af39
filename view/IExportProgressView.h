#pragma once

#include "platform/view/IView.h"

#include <sigc++/signal.h>

namespace TavNA {

// A small modal window over the main one while an export runs: how far it
// has come, and a button that stops it.
class IExportProgressView : public Tav::IView {
public:
    sigc::signal<void()> signalCancel;

    virtual void showOver(Tav::IView* parent) = 0;
    virtual void updateProgress(double fraction) = 0;
    virtual void finish() = 0;
};

} // namespace TavNA
