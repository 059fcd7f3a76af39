#pragma once

#include <gtkmm/window.h>
#include <string>

namespace Tav {

// Base of every top-level window of the host and its modules.
class Window : public Gtk::Window {
public:
    Window();
    void set_title(const std::string& title);
};

} // namespace Tav
