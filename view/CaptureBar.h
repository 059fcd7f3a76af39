#pragma once

#include <cstdint>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/comboboxtext.h>
#include <gtkmm/label.h>
#include <sigc++/signal.h>
#include <string>
#include <vector>

namespace TavNA {

// One interface the user may capture on, as the chooser shows it.
struct InterfaceChoice {
    std::string name;
    std::string description;
    bool up = false;
};

// The status bar's part in ETHERNET mode: which interface, a start/stop
// button, and while capturing the frames captured, per second and lost.
class CaptureBar : public Gtk::Box {
public:
    CaptureBar();

    // Keeps the chosen interface when it is still listed, else the first
    // interface that is up.
    void setInterfaces(const std::vector<InterfaceChoice>& choices);
    // The chosen interface's name; empty when none is.
    std::string chosen() const;
    void setCapturing(bool capturing);
    void setCounts(std::uint64_t captured, std::uint64_t perSecond, std::uint64_t lost);
    void clearCounts();

    sigc::signal<void()> signalStart;
    sigc::signal<void()> signalStop;

    Gtk::ComboBoxText& chooser() { return interfaces; }
    Gtk::Button& startStopButton() { return startStop; }
    Gtk::Label& countsLabel() { return counts; }
    Gtk::Label& lostLabel() { return lost; }

private:
    static std::string shownText(const InterfaceChoice& choice);

    Gtk::ComboBoxText interfaces;
    Gtk::Button startStop;
    Gtk::Label counts;
    Gtk::Label lost;
    bool capturing = false;
};

} // namespace TavNA
