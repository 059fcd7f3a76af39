#include "view/FileManagerView.h"

#include "platform/view/GtkWidgetHelper.h"

namespace TavNA {

FileManagerView::FileManagerView() : Gtk::Box(Gtk::ORIENTATION_VERTICAL, 0) {
    set_hexpand(true);
    set_vexpand(true);
    grid.set_hexpand(true);
    grid.set_vexpand(true);
    grid.get_style_context()->add_class("packageFileManager");
    pack_start(grid, Gtk::PACK_EXPAND_WIDGET);
}

void FileManagerView::setRowView(Tav::IView* name, Tav::IView* removeButton) {
    Gtk::Widget* nameWidget = Tav::GtkWidgetHelper::toWidget(name);
    Gtk::Widget* removeWidget = Tav::GtkWidgetHelper::toWidget(removeButton);
    if (nameWidget == nullptr || removeWidget == nullptr)
        return;
    nameWidget->set_halign(Gtk::ALIGN_START);
    nameWidget->set_margin_start(5);
    nameWidget->set_margin_top(2);
    const int row = static_cast<int>(rowCounter);
    grid.attach(*nameWidget, 0, row);
    grid.attach(*removeWidget, 1, row);
    ++rowCounter;
    grid.show_all();
}

} // namespace TavNA
