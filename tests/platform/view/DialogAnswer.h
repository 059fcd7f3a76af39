#pragma once

#include <functional>
#include <glibmm/main.h>
#include <gtkmm/dialog.h>
#include <gtkmm/messagedialog.h>
#include <gtkmm/window.h>
#include <optional>
#include <string>
#include <vector>

namespace TavTest {

// Answers dialogs of type D as a person would: `look` sees each one shown and
// returns the response to emit, or nothing to keep waiting (for a file chooser
// still loading its folder, say). Only the next dialog is answered unless
// `every`. Dialogs run a nested main loop, so this polls from a timeout on it.
template <typename D>
sigc::connection answerDialogs(std::function<std::optional<int>(D&)> look, bool every) {
    return Glib::signal_timeout().connect(
        [look, every] {
            for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
                auto* dialog = dynamic_cast<D*>(window);
                if (dialog == nullptr || !dialog->get_mapped())
                    continue;
                if (const std::optional<int> response = look(*dialog)) {
                    dialog->response(*response);
                    if (!every)
                        return false;
                }
            }
            return true;
        },
        20);
}

template <typename D> void answerNextDialog(std::function<std::optional<int>(D&)> look) {
    answerDialogs<D>(std::move(look), false);
}

// Every message box that comes up is answered and its text kept.
struct MessageBoxes {
    std::vector<std::string> texts;
    sigc::connection watch = answerDialogs<Gtk::MessageDialog>(
        [this](Gtk::MessageDialog& box) -> std::optional<int> {
            texts.push_back(box.property_text().get_value());
            return Gtk::RESPONSE_OK;
        },
        true);
    ~MessageBoxes() { watch.disconnect(); }
};

} // namespace TavTest
