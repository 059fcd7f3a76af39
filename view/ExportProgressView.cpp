#include "view/ExportProgressView.h"

#include "platform/view/GtkWidgetHelper.h"

namespace TavNA {

ExportProgressView::ExportProgressView() {
    set_title("Экспорт в COMTRADE");
    set_modal(true);
    set_resizable(false);
    set_position(Gtk::WIN_POS_CENTER_ON_PARENT);
    set_default_size(360, -1);
    set_border_width(12);
    bar.set_show_text(true);
    cancel.set_halign(Gtk::ALIGN_END);
    box.pack_start(label, Gtk::PACK_SHRINK);
    box.pack_start(bar, Gtk::PACK_SHRINK);
    box.pack_start(cancel, Gtk::PACK_SHRINK);
    add(box);
    cancel.signal_clicked().connect([this] { signalCancel.emit(); });
    signal_delete_event().connect(sigc::mem_fun(*this, &ExportProgressView::_onDeleteEvent));
}

void ExportProgressView::showOver(Tav::IView* parent) {
    if (Gtk::Window* window = Tav::GtkWidgetHelper::getParentWindow(parent))
        set_transient_for(*window);
    bar.set_fraction(0.0);
    cancel.set_sensitive(true);
    show_all();
}

void ExportProgressView::updateProgress(double fraction) {
    bar.set_fraction(fraction);
}

void ExportProgressView::finish() {
    hide();
}

// Closing the window asks the export to stop; it goes when the export has.
bool ExportProgressView::_onDeleteEvent(GdkEventAny*) {
    signalCancel.emit();
    return true;
}

} // namespace TavNA
