#pragma once

#include <functional>
#include <glibmm/main.h>
#include <gtkmm/dialog.h>
#include <gtkmm/window.h>
#include <optional>

namespace TavTest {

// Answers the next dialog of type D that appears, as a person would: `look` sees
// it first and returns the response to emit, or nothing to keep waiting (for a
// file chooser still loading its folder, say). Dialogs run a nested main loop,
// so this polls from a timeout on that loop.
template <typename D> void answerNextDialog(std::function<std::optional<int>(D&)> look) {
    Glib::signal_timeout().connect(
        [look] {
            for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
                auto* dialog = dynamic_cast<D*>(window);
                if (dialog == nullptr || !dialog->get_mapped())
                    continue;
                if (const std::optional<int> response = look(*dialog)) {
                    dialog->response(*response);
                    return false;
                }
            }
            return true;
        },
        20);
}

} // namespace TavTest
