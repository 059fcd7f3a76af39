#include "view/PhasorDiagram.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace TavNA {

namespace {

void setColour(const Cairo::RefPtr<Cairo::Context>& cr, std::uint32_t abgr) {
    cr->set_source_rgb((abgr & 0xFF) / 255.0, ((abgr >> 8) & 0xFF) / 255.0,
                       ((abgr >> 16) & 0xFF) / 255.0);
}

void arrow(const Cairo::RefPtr<Cairo::Context>& cr, double cx, double cy, double length,
           double radians, double width) {
    const double x = cx + length * std::cos(radians), y = cy - length * std::sin(radians);
    cr->set_line_width(width);
    cr->move_to(cx, cy);
    cr->line_to(x, y);
    cr->stroke();
    const double head = std::min(10.0, length / 3);
    for (const double side : {-0.4, 0.4}) {
        cr->move_to(x, y);
        cr->line_to(x - head * std::cos(radians + side), y + head * std::sin(radians + side));
    }
    cr->stroke();
}

} // namespace

PhasorDiagram::PhasorDiagram() {
    set_size_request(240, 240);
}

void PhasorDiagram::setPhasors(std::vector<PhasorArrow> phasors) {
    phasors_ = std::move(phasors);
    queue_draw();
}

bool PhasorDiagram::on_draw(const Cairo::RefPtr<Cairo::Context>& cr) {
    const double w = get_allocated_width(), h = get_allocated_height();
    const double cx = w / 2, cy = h / 2, radius = std::max(10.0, std::min(w, h) / 2 - 30);
    cr->set_source_rgb(1, 1, 1);
    cr->paint();
    cr->set_source_rgb(0.8, 0.8, 0.8);
    cr->set_line_width(1);
    cr->arc(cx, cy, radius, 0, 2 * std::numbers::pi);
    cr->move_to(cx - radius, cy);
    cr->line_to(cx + radius, cy);
    cr->move_to(cx, cy - radius);
    cr->line_to(cx, cy + radius);
    cr->stroke();
    double largest[2] = {0, 0};
    for (const auto& p : phasors_)
        largest[p.voltage] = std::max(largest[p.voltage], p.magnitude);
    cr->set_font_size(11);
    for (const auto& p : phasors_) {
        if (largest[p.voltage] <= 0)
            continue;
        const double length = radius * (p.voltage ? 1.0 : 0.7) * p.magnitude / largest[p.voltage];
        const double radians = p.angleDeg * std::numbers::pi / 180;
        setColour(cr, p.colour);
        arrow(cr, cx, cy, length, radians, p.voltage ? 2.5 : 1.5);
        cr->set_source_rgb(0.1, 0.1, 0.1);
        Cairo::TextExtents extents;
        cr->get_text_extents(p.label, extents);
        // Voltages are named beyond their tips, currents just past theirs and
        // a line lower, so that a current in phase with its voltage stays legible.
        const double lx = cx + (length + 8) * std::cos(radians);
        const double ly =
            cy - (length + 8) * std::sin(radians) + (p.voltage ? 0.0 : extents.height + 4);
        cr->move_to(std::clamp(lx - (std::cos(radians) < 0 ? extents.width : 0), 2.0,
                               std::max(2.0, w - extents.width - 2)),
                    std::clamp(ly + extents.height / 2, extents.height + 2, h - 2));
        cr->show_text(p.label);
    }
    return true;
}

} // namespace TavNA
