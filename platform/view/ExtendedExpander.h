#pragma once

#include <gtkmm/expander.h>
#include <sigc++/signal.h>

namespace Tav {

// An expander whose header is any widget, with one signal for every change of
// the expanded state, whether the user clicked the arrow or code set it. Block
// the signal around set_expanded() to change the state quietly. It starts
// shut; `fillHeader` lets the header widget take the whole row, so that a
// header that is itself a button is easy to hit.
class ExtendedExpander : public Gtk::Expander {
public:
    explicit ExtendedExpander(bool fillHeader = false);

    sigc::signal<void()>& signal_expanded_changed() { return expandedChanged_; }

private:
    sigc::signal<void()> expandedChanged_;
};

} // namespace Tav
