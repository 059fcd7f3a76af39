#pragma once

#include "platform/view/IView.h"

#include <sigc++/signal.h>
#include <string>

namespace TavNA {

// The module's top-level window: a header, a body and a footer, top to bottom.
class ITavNaView : public Tav::IView {
public:
    // The user asked to close the window; closing it is up to the presenter.
    sigc::signal<void()> signalCloseRequest;

    virtual void show(Tav::IView* parent, const std::string& title) = 0;
    // Header and footer replace what they held; the body keeps adding.
    virtual void addHeader(Tav::IView* view) = 0;
    virtual void addWidget(Tav::IView* view) = 0;
    virtual void addFooter(Tav::IView* view) = 0;
};

} // namespace TavNA
