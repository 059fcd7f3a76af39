#include "view/CancelButton.h"

#include <gtkmm/image.h>

namespace TavNA {

void makeCancelButton(Gtk::Button& button) {
    auto* image = Gtk::manage(new Gtk::Image());
    image->get_style_context()->add_class("cancelLoadImage");
    button.set_image(*image);
    button.set_always_show_image(true);
    button.set_relief(Gtk::RELIEF_NONE);
    button.get_style_context()->add_class("cancelLoadBtn");
    button.set_hexpand(false);
    button.set_vexpand(false);
    button.set_halign(Gtk::ALIGN_CENTER);
    button.set_valign(Gtk::ALIGN_CENTER);
}

} // namespace TavNA
