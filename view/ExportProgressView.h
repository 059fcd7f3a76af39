#pragma once

#include "view/IExportProgressView.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/window.h>

namespace TavNA {

class ExportProgressView : public IExportProgressView, public Gtk::Window {
public:
    ExportProgressView();

    void showOver(Tav::IView* parent) override;
    void updateProgress(double fraction) override;
    void finish() override;

    Gtk::ProgressBar& progressBar() { return bar; }
    Gtk::Button& cancelButton() { return cancel; }

private:
    bool _onDeleteEvent(GdkEventAny* event);

    Gtk::Box box{Gtk::ORIENTATION_VERTICAL, 8};
    Gtk::Label label{"Экспорт в COMTRADE…"};
    Gtk::ProgressBar bar;
    Gtk::Button cancel{"Отмена"};
};

} // namespace TavNA
