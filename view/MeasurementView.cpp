#include "view/MeasurementView.h"

namespace TavNA {

MeasurementView::MeasurementView() : Gtk::Box(Gtk::ORIENTATION_VERTICAL, 6) {
    heading_.set_xalign(0.0);
    heading_.set_line_wrap(true);
    heading_.set_selectable(true);
    pack_start(heading_, Gtk::PACK_SHRINK);
    choosers_.pack_start(referenceLabel_, Gtk::PACK_SHRINK);
    choosers_.pack_start(reference_, Gtk::PACK_SHRINK);
    choosers_.pack_start(harmonicLabel_, Gtk::PACK_SHRINK);
    choosers_.pack_start(harmonic_, Gtk::PACK_SHRINK);
    pack_start(choosers_, Gtk::PACK_SHRINK);
    for (TextTable* table : {&channels_, &sequences_, &power_})
        tables_.pack_start(*table, Gtk::PACK_SHRINK);
    scroller_.add(tables_);
    scroller_.set_policy(Gtk::POLICY_AUTOMATIC, Gtk::POLICY_AUTOMATIC);
    pages_.append_page(scroller_, "Значения");
    pages_.append_page(phasors_, "Векторы");
    pages_.append_page(harmonics_, "Гармоники");
    pack_start(pages_, Gtk::PACK_EXPAND_WIDGET);
    reference_.signal_changed().connect([this] {
        if (!filling_)
            signalReferenceChosen.emit();
    });
    harmonic_.signal_changed().connect([this] {
        if (!filling_)
            signalHarmonicChosen.emit();
    });
    show_all_children();
}

void MeasurementView::setHeading(const std::string& text) {
    heading_.set_text(text);
}

void MeasurementView::setTables(const std::vector<std::vector<std::string>>& channels,
                                const std::vector<std::vector<std::string>>& sequences,
                                const std::vector<std::vector<std::string>>& power) {
    channels_.setRows(channels);
    sequences_.setRows(sequences);
    power_.setRows(power);
    sequences_.set_visible(!sequences.empty());
    power_.set_visible(!power.empty());
}

void MeasurementView::setPhasors(std::vector<PhasorArrow> phasors) {
    phasors_.setPhasors(std::move(phasors));
}

void MeasurementView::setHarmonics(std::vector<std::optional<double>> percent) {
    harmonics_.setHarmonics(std::move(percent));
}

void MeasurementView::fill(Gtk::ComboBoxText& box, const std::vector<std::string>& names,
                           std::size_t chosen) {
    box.remove_all();
    for (const auto& name : names)
        box.append(name);
    if (chosen < names.size())
        box.set_active(static_cast<int>(chosen));
}

void MeasurementView::setReferenceChoices(const std::vector<std::string>& names,
                                          std::size_t chosen) {
    filling_ = true;
    referenceNames_ = names;
    fill(reference_, names, chosen);
    filling_ = false;
}

void MeasurementView::setHarmonicChoices(const std::vector<std::string>& names,
                                         std::size_t chosen) {
    filling_ = true;
    fill(harmonic_, names, chosen);
    filling_ = false;
}

} // namespace TavNA
