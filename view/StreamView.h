#pragma once

#include "platform/view/ExtendedExpander.h"
#include "view/IGooseStreamView.h"
#include "view/ISvStreamView.h"

#include <gtkmm/button.h>
#include <sigc++/connection.h>
#include <sigc++/signal.h>

namespace TavNA {

// A stream entry: an expander whose header is the stream's name button and
// whose body is the box of channel check buttons.
template <typename Interface> class StreamView : public Interface, public Tav::ExtendedExpander {
public:
    StreamView();

    void setName(const std::string& text) override;
    void setNameTooltip(const std::string& text) override;
    void addView(Tav::IView* view) override;
    void select() override;
    void unselect() override;

    Gtk::Button& nameButton() { return button; }

    sigc::signal<void()> signalSelected;

private:
    void _onExpandChanged();

    Gtk::Button button;
    sigc::connection expandedConnection;
};

extern template class StreamView<ISvStreamView>;
extern template class StreamView<IGooseStreamView>;

} // namespace TavNA
