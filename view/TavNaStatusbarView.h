#pragma once

#include "view/CaptureBar.h"
#include "view/ITavNaStatusbarView.h"

#include <array>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/grid.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/switch.h>

namespace TavNA {

class TavNaStatusbarView : public ITavNaStatusbarView, public Gtk::Box {
public:
    TavNaStatusbarView();

    void showProgress(bool visible) override;
    void showCancelLoadButton(bool visible) override;
    void updateProgress(double fraction) override;
    void setFileName(const std::string& path) override;
    void setMode(const std::string& mode) override;
    void reset() override;

    // The parts, for those who look at or drive the bar directly.
    Gtk::ProgressBar& progressBar() { return progress; }
    Gtk::Button& cancelLoadButton() { return cancelLoad; }
    Gtk::Switch& modeSwitch() { return switchMode; }
    Gtk::Label& modeLabel() { return modeName; }
    // Shown in ETHERNET mode only.
    CaptureBar& captureBar() { return capture; }
    void showCapture(bool visible) { capture.set_visible(visible); }

private:
    void _onModeSwitchActiveChanged();
    void _onCancelLoadClicked();

    Gtk::Grid grid;
    // Only the first and the last are placed; the columns between them are
    // kept free for status texts.
    std::array<Gtk::Label, 9> labels;
    Gtk::ProgressBar progress;
    Gtk::Button cancelLoad;
    Gtk::Label modeCaption{"Режим работы: "};
    Gtk::Switch switchMode;
    Gtk::Label modeName;
    CaptureBar capture;
    sigc::connection modeSwitchedConnection;
};

} // namespace TavNA
