#include "view/HarmonicChart.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace TavNA {

namespace {

// 1, 2, 5, 10, 20, 50 … at or above `value`.
double niceCeiling(double value) {
    double step = 1;
    while (step < value)
        for (const double m : {2.0, 2.5, 2.0})
            if ((step *= m) >= value)
                break;
    return step;
}

} // namespace

HarmonicChart::HarmonicChart() {
    set_size_request(300, 150);
}

void HarmonicChart::setHarmonics(std::vector<std::optional<double>> percent) {
    percent_ = std::move(percent);
    queue_draw();
}

bool HarmonicChart::on_draw(const Cairo::RefPtr<Cairo::Context>& cr) {
    const double w = get_allocated_width(), h = get_allocated_height();
    const double left = 40, bottom = h - 18, top = 8, right = w - 6;
    cr->set_source_rgb(1, 1, 1);
    cr->paint();
    double largest = 0;
    for (std::size_t k = 2; k < percent_.size(); ++k)
        if (percent_[k])
            largest = std::max(largest, *percent_[k]);
    const double scale = niceCeiling(std::max(largest, 1.0));
    cr->set_font_size(10);
    cr->set_source_rgb(0.3, 0.3, 0.3);
    cr->set_line_width(1);
    cr->move_to(left, top);
    cr->line_to(left, bottom);
    cr->line_to(right, bottom);
    cr->stroke();
    char text[32];
    for (const double at : {0.0, scale / 2, scale}) {
        std::snprintf(text, sizeof text, "%g %%", at);
        cr->move_to(2, bottom - (bottom - top) * at / scale + 4);
        cr->show_text(text);
    }
    const std::size_t count = percent_.size() > 2 ? percent_.size() - 2 : 0;
    const double slot = count > 0 ? (right - left) / static_cast<double>(count) : 0;
    for (std::size_t k = 2; k < percent_.size(); ++k) {
        const double x = left + slot * static_cast<double>(k - 2);
        if (percent_[k]) {
            const double height = (bottom - top) * std::min(*percent_[k], scale) / scale;
            cr->set_source_rgb(0.2, 0.4, 0.75);
            cr->rectangle(x + slot * 0.15, bottom - height, slot * 0.7, height);
            cr->fill();
        }
        if (k % 5 == 0 || k == 2) {
            cr->set_source_rgb(0.3, 0.3, 0.3);
            std::snprintf(text, sizeof text, "%zu", k);
            cr->move_to(x, h - 4);
            cr->show_text(text);
        }
    }
    return true;
}

} // namespace TavNA
