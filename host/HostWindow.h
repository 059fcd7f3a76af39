#pragma once

#include "platform/view/IView.h"
#include "platform/view/Window.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/listbox.h>
#include <sigc++/signal.h>

namespace TavHost {

// The host's own small window: the modules it runs and a way out. Modules
// open their windows over it.
class HostWindow : public Tav::Window, public Tav::IView {
public:
    HostWindow();

    // Returns the row so that it can be taken away when the module closes.
    Gtk::Widget* addModule(const std::string& title, const std::string& iconPath);
    void removeModule(Gtk::Widget* row);

    sigc::signal<void()> signalQuit; // the Quit button or the window's close box

private:
    bool _onDeleteEvent(GdkEventAny*);

    Gtk::Box box_{Gtk::ORIENTATION_VERTICAL, 8};
    Gtk::Label heading_;
    Gtk::ListBox modules_;
    Gtk::Button quit_{"Выход"};
};

} // namespace TavHost
