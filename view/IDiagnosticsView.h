#pragma once

#include "platform/view/IView.h"

#include <sigc++/signal.h>
#include <string>
#include <vector>

namespace TavNA {

// One line of the diagnostics panel: a label and its value.
struct DiagnosticsLine {
    std::string name;
    std::string value;

    friend bool operator==(const DiagnosticsLine&, const DiagnosticsLine&) = default;
};

class IDiagnosticsView : public Tav::IView {
public:
    ~IDiagnosticsView() override = default;
    // A heading, then lines; only the lines from `firstEvent` on can be activated.
    virtual void show(const std::string& heading, const std::vector<DiagnosticsLine>& lines,
                      std::size_t firstEvent) = 0;

    // The place of an activated event among the events (lines from firstEvent).
    sigc::signal<void(std::size_t)> signalEventActivated;
};

} // namespace TavNA
