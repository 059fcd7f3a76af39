#pragma once

#include "platform/view/Window.h"
#include "view/ITavNaView.h"

#include <gtkmm/box.h>

namespace TavNA {

class TavNaView : public ITavNaView, public Tav::Window {
public:
    TavNaView();

    using Tav::Window::show;
    void show(Tav::IView* parent, const std::string& title) override;
    void addHeader(Tav::IView* view) override;
    void addWidget(Tav::IView* view) override;
    void addFooter(Tav::IView* view) override;

    // The three areas, for those who need to look inside.
    Gtk::Box& headerBox() { return header; }
    Gtk::Box& bodyBox() { return body; }
    Gtk::Box& footerBox() { return footer; }

private:
    bool _onClose(GdkEventAny* event);
    void _fitToScreen();
    static void _replaceChildren(Gtk::Box& box, Tav::IView* view);

    Gtk::Box mainBox{Gtk::ORIENTATION_HORIZONTAL, 0};
    Gtk::Box header{Gtk::ORIENTATION_HORIZONTAL, 0};
    Gtk::Box body{Gtk::ORIENTATION_HORIZONTAL, 0};
    Gtk::Box footer{Gtk::ORIENTATION_HORIZONTAL, 0};
};

} // namespace TavNA
