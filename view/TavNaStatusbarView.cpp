#include "view/TavNaStatusbarView.h"

#include "view/CancelButton.h"

#include <glibmm/miscutils.h>

namespace TavNA {

TavNaStatusbarView::TavNaStatusbarView() : Gtk::Box(Gtk::ORIENTATION_HORIZONTAL, 0) {
    grid.attach(labels[0], 0, 0);
    capture.set_no_show_all(true);
    capture.hide();
    capture.set_margin_start(8);
    grid.attach(capture, 1, 0);
    labels[8].set_hexpand(true);
    grid.attach(labels[8], 8, 0);

    progress.set_no_show_all(true);
    progress.set_halign(Gtk::ALIGN_CENTER);
    progress.set_valign(Gtk::ALIGN_CENTER);
    progress.set_hexpand(false);
    progress.set_vexpand(true);
    progress.set_show_text(true);
    progress.set_pulse_step(0.1);
    progress.set_fraction(0.0);
    grid.attach(progress, 9, 0);

    makeCancelButton(cancelLoad);
    cancelLoad.set_tooltip_text("Отменить загрузку");
    cancelLoad.set_no_show_all(true);
    grid.attach(cancelLoad, 10, 0);

    modeCaption.get_style_context()->add_class("status_label");
    modeCaption.set_vexpand(true);
    modeCaption.set_valign(Gtk::ALIGN_CENTER);
    grid.attach(modeCaption, 11, 0);

    switchMode.set_hexpand(false);
    switchMode.set_vexpand(false);
    switchMode.get_style_context()->add_class("switchBtn");
    grid.attach(switchMode, 12, 0);

    modeName.get_style_context()->add_class("status_label");
    modeName.get_style_context()->add_class("orange");
    modeName.set_size_request(80, -1);
    grid.attach(modeName, 13, 0);

    grid.set_hexpand(true);
    pack_start(grid, Gtk::PACK_EXPAND_WIDGET);
    get_style_context()->add_class("statusbar");
    set_hexpand(true);
    set_vexpand(false);
    set_size_request(-1, 34);
    set_margin_start(0);
    set_margin_end(0);
    set_margin_bottom(0);

    modeSwitchedConnection = switchMode.property_active().signal_changed().connect(
        sigc::mem_fun(*this, &TavNaStatusbarView::_onModeSwitchActiveChanged));
    cancelLoad.signal_clicked().connect(
        sigc::mem_fun(*this, &TavNaStatusbarView::_onCancelLoadClicked));
    show_all();
}

void TavNaStatusbarView::showProgress(bool visible) {
    progress.set_visible(visible);
}

void TavNaStatusbarView::showCancelLoadButton(bool visible) {
    cancelLoad.set_visible(visible);
}

void TavNaStatusbarView::updateProgress(double fraction) {
    progress.set_fraction(fraction);
}

void TavNaStatusbarView::setFileName(const std::string& path) {
    // No file clears the text; the base name of "" would be ".".
    progress.set_text(path.empty() ? std::string() : Glib::path_get_basename(path));
}

void TavNaStatusbarView::setMode(const std::string& mode) {
    modeName.set_text(mode);
    // Showing the model's mode must not read as the user switching it.
    modeSwitchedConnection.block();
    if (mode == "ETHERNET")
        switchMode.set_state(true);
    else if (mode == "PCAP")
        switchMode.set_state(false);
    modeSwitchedConnection.unblock();
}

void TavNaStatusbarView::reset() {
    progress.set_fraction(0.0);
    progress.set_text("");
    labels[1].set_text("");
}

void TavNaStatusbarView::_onModeSwitchActiveChanged() {
    signalModeSwitched.emit(switchMode.get_active());
}

void TavNaStatusbarView::_onCancelLoadClicked() {
    signalCancelLoad.emit();
}

} // namespace TavNA
