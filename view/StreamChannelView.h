#pragma once

#include "view/IGooseStreamChannelView.h"
#include "view/ISvStreamChannelView.h"

#include <gtkmm/box.h>
#include <gtkmm/checkbutton.h>
#include <sigc++/signal.h>

namespace TavNA {

template <typename Interface> class StreamChannelView : public Interface, public Gtk::Box {
public:
    StreamChannelView();
    void addView(Tav::IView* view) override;
    void setName(const std::string& text) override;

    Gtk::CheckButton& checkButton() { return button; }

    sigc::signal<void(bool)> signalStatusChanged;

private:
    void _onCheckButtonToggled();

    Gtk::CheckButton button;
};

extern template class StreamChannelView<ISvStreamChannelView>;
extern template class StreamChannelView<IGooseStreamChannelView>;

} // namespace TavNA
