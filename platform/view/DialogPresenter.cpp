#include "platform/view/DialogPresenter.h"

#include "platform/view/GtkWidgetHelper.h"

#include <gtkmm/messagedialog.h>

namespace Tav {

namespace {

Gtk::MessageType messageType(DialogResult kind) {
    switch (kind) {
    case DialogResult::Warning:
        return Gtk::MESSAGE_WARNING;
    case DialogResult::Error:
        return Gtk::MESSAGE_ERROR;
    case DialogResult::Question:
        return Gtk::MESSAGE_QUESTION;
    default:
        return Gtk::MESSAGE_INFO;
    }
}

DialogResult answer(int response) {
    switch (response) {
    case Gtk::RESPONSE_OK:
        return DialogResult::Ok;
    case Gtk::RESPONSE_CANCEL:
        return DialogResult::Cancel;
    case Gtk::RESPONSE_YES:
        return DialogResult::Yes;
    case Gtk::RESPONSE_NO:
        return DialogResult::No;
    default:
        return DialogResult::None;
    }
}

} // namespace

DialogResult DialogPresenter::show(IView* parent, const std::string& message,
                                   const std::string& detail, DialogResult kind) {
    const bool question = kind == DialogResult::Question;
    Gtk::MessageDialog dialog(message, false, messageType(kind),
                              question ? Gtk::BUTTONS_YES_NO : Gtk::BUTTONS_OK, true);
    if (!detail.empty())
        dialog.set_secondary_text(detail);
    if (Gtk::Window* window = GtkWidgetHelper::getParentWindow(parent))
        dialog.set_transient_for(*window);
    dialog.set_position(Gtk::WIN_POS_CENTER_ON_PARENT);
    return answer(dialog.run());
}

} // namespace Tav
