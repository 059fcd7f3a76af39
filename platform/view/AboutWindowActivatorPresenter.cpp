#include "platform/view/AboutWindowActivatorPresenter.h"

#include "platform/view/GtkWidgetHelper.h"

#include <gdkmm/pixbuf.h>
#include <glibmm/error.h>
#include <gtkmm/aboutdialog.h>

namespace Tav {

void AboutWindowActivatorPresenter::show(IView* parent, const std::string& title,
                                         const std::string& version) {
    show(parent, title, version, {});
}

void AboutWindowActivatorPresenter::show(IView* parent, const std::string& title,
                                         const std::string& version, const std::string& iconPath) {
    Gtk::AboutDialog dialog;
    dialog.set_title(title);
    dialog.set_program_name(title);
    dialog.set_version(version);
    if (!iconPath.empty()) {
        try {
            dialog.set_logo(Gdk::Pixbuf::create_from_file(iconPath, 128, 128, true));
        } catch (const Glib::Error&) {
            // A missing or broken icon leaves the default one; not worth a message.
        }
    }
    if (Gtk::Window* window = GtkWidgetHelper::getParentWindow(parent))
        dialog.set_transient_for(*window);
    dialog.set_modal(true);
    dialog.run();
}

} // namespace Tav
