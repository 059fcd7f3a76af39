#pragma once

#include "view/ITavNaMenuView.h"

#include <gtkmm/menu.h>
#include <gtkmm/menubar.h>
#include <gtkmm/menuitem.h>

namespace TavNA {

class TavNaMenuView : public ITavNaMenuView, public Gtk::MenuBar {
public:
    TavNaMenuView();

    void setHelpPath(const std::string& path) override;
    const std::string& helpPath() const { return help; }

    // The items, for those who drive the menu without a pointer.
    Gtk::MenuItem& openItem() { return openFile; }
    Gtk::MenuItem& exportItem() { return exportComtrade; }
    Gtk::MenuItem& openSclItem() { return openScl; }
    Gtk::MenuItem& aboutItem() { return about; }
    Gtk::MenuItem& helpItem() { return helpDocument; }
    Gtk::MenuItem& startCaptureItem() { return startCapture; }
    Gtk::MenuItem& stopCaptureItem() { return stopCapture; }
    Gtk::MenuItem& saveCaptureItem() { return saveCapture; }

private:
    void _initializeView();
    void _onMenuOpenFileClicked();
    void _onMenuAboutClicked();
    void _onMenuHelpClicked();

    std::string help;
    Gtk::MenuItem fileTop{"Файл"};
    Gtk::Menu fileMenu;
    Gtk::MenuItem openFile{"Открыть"};
    Gtk::MenuItem openScl{"Открыть SCL…"};
    Gtk::MenuItem exportComtrade{"Экспорт в COMTRADE…"};
    Gtk::MenuItem captureTop{"Захват"};
    Gtk::Menu captureMenu;
    Gtk::MenuItem startCapture{"Начать захват"};
    Gtk::MenuItem stopCapture{"Остановить захват"};
    Gtk::MenuItem saveCapture{"Сохранить захват…"};
    Gtk::MenuItem helpTop{"Помощь"};
    Gtk::Menu helpMenu;
    Gtk::MenuItem about{"О программе"};
    Gtk::MenuItem helpDocument{"Помощь"};
};

} // namespace TavNA
