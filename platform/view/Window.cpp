#include "platform/view/Window.h"

namespace Tav {

Window::Window() {
    set_default_size(1024, 720);
}

void Window::set_title(const std::string& title) {
    Gtk::Window::set_title(title);
}

} // namespace Tav
