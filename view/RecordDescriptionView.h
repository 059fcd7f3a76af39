#pragma once

#include "view/IRecordDescriptionView.h"

#include <gtkmm/box.h>

namespace TavNA {

// The sections of the picked stream, stacked at the top of the panel.
class RecordDescriptionView : public IRecordDescriptionView, public Gtk::Box {
public:
    RecordDescriptionView();
    void setView(Tav::IView* view) override;
    // The sections only leave: their presenters own them and bring them back.
    void clear() override;

    Gtk::Box& sectionsBox() { return sections; }

private:
    Gtk::Box sections{Gtk::ORIENTATION_VERTICAL, 0};
};

} // namespace TavNA
