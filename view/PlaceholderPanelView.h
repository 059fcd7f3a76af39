#pragma once

#include "platform/view/IView.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <string>

namespace TavNA {

// Stands in for a panel whose own view is not written yet: it shows the
// panel's title, so the layout around it can be built and looked at.
class PlaceholderPanelView : public Tav::IView, public Gtk::Box {
public:
    explicit PlaceholderPanelView(const std::string& title);

    std::string text() const { return label.get_text(); }

private:
    Gtk::Label label;
};

} // namespace TavNA
