#include "platform/view/GtkWidgetHelper.h"
#include "platform/view/Window.h"

#include <gtest/gtest.h>

#include <gtkmm/box.h>

namespace {

class BoxView : public Gtk::Box, public Tav::IView {};
class PlainView : public Tav::IView {};

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
