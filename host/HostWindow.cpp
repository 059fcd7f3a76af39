#include "host/HostWindow.h"

#include <filesystem>
#include <gdkmm/pixbuf.h>
#include <glibmm/error.h>
#include <gtkmm/image.h>

namespace TavHost {

HostWindow::HostWindow() {
    set_title("TavNA");
    set_default_size(360, 220);
    get_style_context()->add_class("hostWindow");
    heading_.set_text("Модули");
    heading_.set_halign(Gtk::ALIGN_START);
    modules_.set_selection_mode(Gtk::SELECTION_NONE);
    modules_.set_vexpand(true);
    quit_.set_halign(Gtk::ALIGN_END);
    quit_.signal_clicked().connect([this] { signalQuit.emit(); });
    box_.set_border_width(12);
    box_.pack_start(heading_, false, false);
    box_.pack_start(modules_, true, true);
    box_.pack_start(quit_, false, false);
    add(box_);
    signal_delete_event().connect(sigc::mem_fun(*this, &HostWindow::_onDeleteEvent));
}

Gtk::Widget* HostWindow::addModule(const std::string& title, const std::string& iconPath) {
    auto* row = Gtk::manage(new Gtk::Box(Gtk::ORIENTATION_HORIZONTAL, 8));
    std::error_code ec;
    if (!iconPath.empty() && std::filesystem::is_regular_file(iconPath, ec)) {
        try {
            auto icon = Gdk::Pixbuf::create_from_file(iconPath, 32, 32, true);
            row->pack_start(*Gtk::manage(new Gtk::Image(icon)), false, false);
        } catch (const Glib::Error&) {
            // An unreadable icon only costs the picture.
        }
    }
    row->pack_start(*Gtk::manage(new Gtk::Label(title)), false, false);
    modules_.append(*row);
    row->show_all();
    return row;
}

void HostWindow::removeModule(Gtk::Widget* row) {
    if (row == nullptr)
        return;
    // The list wraps each child in a row of its own; that row goes too.
    if (Gtk::Container* listRow = row->get_parent())
        modules_.remove(*listRow);
}

// Leaving is the application's decision: it closes the modules first.
bool HostWindow::_onDeleteEvent(GdkEventAny*) {
    signalQuit.emit();
    return true;
}

} // namespace TavHost
