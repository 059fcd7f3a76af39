#pragma once

#include "platform/view/IView.h"
#include "view/HarmonicChart.h"
#include "view/PhasorArrow.h"
#include "view/PhasorDiagram.h"
#include "view/TextTable.h"

#include <gtkmm/box.h>
#include <gtkmm/comboboxtext.h>
#include <gtkmm/label.h>
#include <gtkmm/notebook.h>
#include <gtkmm/scrolledwindow.h>
#include <sigc++/signal.h>

#include <optional>
#include <string>
#include <vector>

namespace TavNA {

// The measurements panel: what was measured, a table of each channel's
// figures, sequence components and power, the phasor diagram, and the
// harmonics of one chosen channel; the reference channel can be chosen.
class MeasurementView : public Tav::IView, public Gtk::Box {
public:
    MeasurementView();

    void setHeading(const std::string& text);
    void setTables(const std::vector<std::vector<std::string>>& channels,
                   const std::vector<std::vector<std::string>>& sequences,
                   const std::vector<std::vector<std::string>>& power);
    void setPhasors(std::vector<PhasorArrow> phasors);
    void setHarmonics(std::vector<std::optional<double>> percent);
    // The choices of each chooser, keeping the chosen one where it is still offered.
    void setReferenceChoices(const std::vector<std::string>& names, std::size_t chosen);
    void setHarmonicChoices(const std::vector<std::string>& names, std::size_t chosen);

    std::string getHeading() const { return heading_.get_text(); }
    const TextTable& channelTable() const { return channels_; }
    const TextTable& sequenceTable() const { return sequences_; }
    const TextTable& powerTable() const { return power_; }
    // As the user picks them; -1 for none.
    const std::vector<std::string>& referenceNames() const { return referenceNames_; }
    int referenceChoice() const { return reference_.get_active_row_number(); }
    int harmonicChoice() const { return harmonic_.get_active_row_number(); }
    void showPage(int page) { pages_.set_current_page(page); }
    void chooseReference(int row) { reference_.set_active(row); }
    void chooseHarmonic(int row) { harmonic_.set_active(row); }

    sigc::signal<void()> signalReferenceChosen;
    sigc::signal<void()> signalHarmonicChosen;

private:
    static void fill(Gtk::ComboBoxText& box, const std::vector<std::string>& names,
                     std::size_t chosen);

    Gtk::Label heading_;
    Gtk::Box choosers_{Gtk::ORIENTATION_HORIZONTAL, 6};
    Gtk::Label referenceLabel_{"Опорный канал:"};
    Gtk::ComboBoxText reference_;
    Gtk::Label harmonicLabel_{"Гармоники:"};
    Gtk::ComboBoxText harmonic_;
    // A panel shares its column with others: one page at a time keeps each readable.
    Gtk::Notebook pages_;
    Gtk::ScrolledWindow scroller_;
    Gtk::Box tables_{Gtk::ORIENTATION_VERTICAL, 6};
    TextTable channels_{{"Канал", "Действующее", "Основная", "Угол", "КГИ", "Постоянная"}};
    TextTable sequences_{{"Набор", "Прямая", "Обратная", "Нулевая", "Несимметрия"}};
    TextTable power_{{"Фаза", "P", "Q", "S", "cos φ"}};
    PhasorDiagram phasors_;
    HarmonicChart harmonics_;
    std::vector<std::string> referenceNames_;
    bool filling_ = false;
};

} // namespace TavNA
