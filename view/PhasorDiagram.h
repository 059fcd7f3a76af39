#pragma once

#include "view/PhasorArrow.h"

#include <gtkmm/drawingarea.h>

#include <vector>

namespace TavNA {

// Fundamental phasors as arrows from the centre, the reference along the
// positive x axis, counter-clockwise positive; voltages and currents each
// scaled to their largest, currents drawn shorter so that both are seen.
class PhasorDiagram : public Gtk::DrawingArea {
public:
    PhasorDiagram();
    void setPhasors(std::vector<PhasorArrow> phasors);

protected:
    bool on_draw(const Cairo::RefPtr<Cairo::Context>& cr) override;

private:
    std::vector<PhasorArrow> phasors_;
};

} // namespace TavNA
