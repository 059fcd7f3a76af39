#pragma once

#include <chrono>
#include <functional>

namespace Gtk {
class Button;
}

namespace TavTest {

// Puts a click of the first mouse button on the button into the display's
// event queue, where a person's click waits until the main loop reads it.
void queueClick(Gtk::Button& button);

// Runs the GTK main loop until `done` holds or the timeout passes; returns `done()`.
bool pumpUntil(const std::function<bool()>& done,
               std::chrono::milliseconds timeout = std::chrono::seconds(10));

// Runs every pending main-loop event, then returns.
void pumpPending();

// Runs the main loop for a while, for things that have no observable end.
void pumpFor(std::chrono::milliseconds duration);

} // namespace TavTest
