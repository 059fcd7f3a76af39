#pragma once

#include <chrono>
#include <functional>

namespace TavTest {

// Runs the GTK main loop until `done` holds or the timeout passes; returns `done()`.
bool pumpUntil(const std::function<bool()>& done,
               std::chrono::milliseconds timeout = std::chrono::seconds(10));

// Runs every pending main-loop event, then returns.
void pumpPending();

// Runs the main loop for a while, for things that have no observable end.
void pumpFor(std::chrono::milliseconds duration);

} // namespace TavTest
