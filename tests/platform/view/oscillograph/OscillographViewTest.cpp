#include "view/OscillographView.h"
#include "tests/support/GuiTest.h"

#include <gtest/gtest.h>
#include <gtkmm/button.h>
#include <gtkmm/grid.h>
#include <gtkmm/window.h>

namespace TavNA {
namespace {

TEST(OscillographView, FillsItsPanelAndShowsItselfWhole) {
    Gtk::Window window;
    Gtk::Grid panel; // a grid gives a child only what it asks for unless it expands
    Gtk::Button neighbour("x");
    OscillographView view;
    panel.attach(view, 0, 0);
    panel.attach(neighbour, 1, 1);
    window.add(panel);
    window.set_default_size(700, 500);
    window.show();
    panel.show();
    neighbour.show(); // the view is not shown here: it shows itself
    ASSERT_TRUE(TavTest::pumpUntil([&] { return view.getPixelWidth() > 0; }));
    TavTest::pumpPending();

    EXPECT_TRUE(view.plotArea().get_visible());
    EXPECT_GE(view.get_allocated_width(), 700 - neighbour.get_allocated_width() - 1);
    EXPECT_GE(view.get_allocated_height(), 500 - neighbour.get_allocated_height() - 1);
    TavView::IOscillograph* scope = &view;
    EXPECT_FALSE(scope->isActive());
}

} // namespace
} // namespace TavNA
