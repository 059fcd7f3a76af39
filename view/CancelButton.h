#pragma once

#include <gtkmm/button.h>

namespace TavNA {

// Dresses a button as the small cross that cancels a load or removes a file.
// Its image carries no icon of its own: the style sheet draws it, so that
// every such button looks the same.
void makeCancelButton(Gtk::Button& button);

} // namespace TavNA
