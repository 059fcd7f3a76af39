#pragma once

#include <gtkmm/drawingarea.h>

#include <optional>
#include <vector>

namespace TavNA {

// Harmonics 2 … 50 of one channel as bars in % of its fundamental, the scale
// rounded up from the largest; harmonics the sampling rate does not carry
// are left out.
class HarmonicChart : public Gtk::DrawingArea {
public:
    HarmonicChart();
    void setHarmonics(std::vector<std::optional<double>> percent);

protected:
    bool on_draw(const Cairo::RefPtr<Cairo::Context>& cr) override;

private:
    std::vector<std::optional<double>> percent_;
};

} // namespace TavNA
