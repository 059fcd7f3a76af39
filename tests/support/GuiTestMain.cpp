// Test main for everything that needs a display: makes sure one exists (a
// private Xvfb when the caller has none), initialises GTK, then runs the tests.
#include "tools/session/Display.h"

#include <gtest/gtest.h>
#include <gtkmm/main.h>

int main(int argc, char** argv) {
    TavSession::ensureDisplay(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    Gtk::Main kit(argc, argv);
    return RUN_ALL_TESTS();
}
