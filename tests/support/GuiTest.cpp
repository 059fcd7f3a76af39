#include "tests/support/GuiTest.h"

#include <glibmm/main.h>
#include <gtk/gtk.h>
#include <gtkmm/button.h>

namespace TavTest {

void queueClick(Gtk::Button& button) {
    GdkWindow* window = gtk_button_get_event_window(button.gobj());
    if (window == nullptr)
        return;
    GdkDevice* pointer =
        gdk_seat_get_pointer(gdk_display_get_default_seat(gdk_window_get_display(window)));
    for (GdkEventType type : {GDK_ENTER_NOTIFY, GDK_BUTTON_PRESS, GDK_BUTTON_RELEASE}) {
        GdkEvent* event = gdk_event_new(type);
        if (type == GDK_ENTER_NOTIFY) {
            event->crossing.window = GDK_WINDOW(g_object_ref(window));
            event->crossing.send_event = TRUE;
            event->crossing.x = 2;
            event->crossing.y = 2;
            event->crossing.mode = GDK_CROSSING_NORMAL;
            event->crossing.detail = GDK_NOTIFY_NONLINEAR;
        } else {
            event->button.window = GDK_WINDOW(g_object_ref(window));
            event->button.send_event = TRUE;
            event->button.x = 2;
            event->button.y = 2;
            event->button.button = 1;
        }
        gdk_event_set_device(event, pointer);
        gdk_event_put(event);
        gdk_event_free(event);
    }
}

void pumpPending() {
    auto ctx = Glib::MainContext::get_default();
    while (ctx->pending())
        ctx->iteration(false);
}

bool pumpUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
    auto ctx = Glib::MainContext::get_default();
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline)
            return done();
        if (!ctx->iteration(false))
            g_usleep(1000);
    }
    return true;
}

void pumpFor(std::chrono::milliseconds duration) {
    pumpUntil([] { return false; }, duration);
}

} // namespace TavTest
