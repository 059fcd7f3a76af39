#include "platform/view/ExtendedExpander.h"
#include "platform/view/GtkWidgetHelper.h"
#include "platform/view/Window.h"
#include "tests/support/GuiTest.h"

#include <gtest/gtest.h>

#include <gtkmm/box.h>
#include <gtkmm/label.h>

namespace {

class BoxView : public Gtk::Box, public Tav::IView {};
class PlainView : public Tav::IView {};

TEST(ExtendedExpander, ReportsEveryChangeUnlessBlocked) {
    Tav::Window window;
    Tav::ExtendedExpander expander(false);
    Gtk::Label header("SV"), body("channels");
    expander.set_label_widget(header);
    expander.add(body);
    window.add(expander);
    window.show_all();
    ASSERT_TRUE(TavTest::pumpUntil([&] { return expander.get_mapped(); }));
    EXPECT_FALSE(expander.get_expanded());
    EXPECT_EQ(expander.get_label_widget(), &header);

    int changes = 0;
    expander.signal_expanded_changed().connect([&] { ++changes; });
    expander.set_expanded(true);
    EXPECT_EQ(changes, 1);
    // The user's click goes through the same signal.
    expander.activate();
    EXPECT_FALSE(expander.get_expanded());
    EXPECT_EQ(changes, 2);

    // Changing the state quietly, as a picked stream entry does.
    expander.signal_expanded_changed().block();
    expander.set_expanded(true);
    expander.signal_expanded_changed().unblock();
    EXPECT_TRUE(expander.get_expanded());
    EXPECT_EQ(changes, 2);

    EXPECT_TRUE(Tav::ExtendedExpander(true).get_expanded());
}

TEST(GtkWidgetHelper, FindsTheWindowThatHoldsAView) {
    Tav::Window window;
    Gtk::Box outer;
    BoxView inner;
    outer.add(inner);
    window.add(outer);
    EXPECT_EQ(Tav::GtkWidgetHelper::getParentWindow(&inner), &window);

    class WindowView : public Tav::Window, public Tav::IView {
    } windowView;
    EXPECT_EQ(Tav::GtkWidgetHelper::getParentWindow(&windowView), &windowView);

    BoxView loose;
    PlainView notAWidget;
    EXPECT_EQ(Tav::GtkWidgetHelper::getParentWindow(&loose), nullptr);
    EXPECT_EQ(Tav::GtkWidgetHelper::getParentWindow(&notAWidget), nullptr);
    EXPECT_EQ(Tav::GtkWidgetHelper::getParentWindow(nullptr), nullptr);
}

} // namespace
