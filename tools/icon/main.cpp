// Draws the analyser's icon: a waveform of sampled values over a step trace of
// event states, on a rounded tile.
//   tavna-icon OUT.png [SIZE]
#include <cairo.h>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <numbers>
#include <string>

namespace {

constexpr double pi = std::numbers::pi;

void roundedTile(cairo_t* cr, double size) {
    const double r = size * 0.18;
    const double m = size * 0.04;
    const double a = m, b = size - m;
    cairo_new_sub_path(cr);
    cairo_arc(cr, b - r, a + r, r, -pi / 2, 0);
    cairo_arc(cr, b - r, b - r, r, 0, pi / 2);
    cairo_arc(cr, a + r, b - r, r, pi / 2, pi);
    cairo_arc(cr, a + r, a + r, r, pi, 3 * pi / 2);
    cairo_close_path(cr);
}

void background(cairo_t* cr, double size) {
    roundedTile(cr, size);
    cairo_pattern_t* fill = cairo_pattern_create_linear(0, 0, 0, size);
    cairo_pattern_add_color_stop_rgb(fill, 0, 0.13, 0.22, 0.36);
    cairo_pattern_add_color_stop_rgb(fill, 1, 0.06, 0.11, 0.20);
    cairo_set_source(cr, fill);
    cairo_fill(cr);
    cairo_pattern_destroy(fill);
}

void grid(cairo_t* cr, double size) {
    cairo_set_source_rgba(cr, 1, 1, 1, 0.10);
    cairo_set_line_width(cr, size / 128.0);
    for (int i = 1; i < 4; ++i) {
        const double p = size * (0.12 + 0.76 * i / 4.0);
        cairo_move_to(cr, size * 0.12, p);
        cairo_line_to(cr, size * 0.88, p);
        cairo_move_to(cr, p, size * 0.12);
        cairo_line_to(cr, p, size * 0.88);
    }
    cairo_stroke(cr);
}

// Three phases of a sampled current, drawn as dots on their curves.
void waveform(cairo_t* cr, double size) {
    const double colours[3][3] = {{0.98, 0.62, 0.10}, {0.35, 0.80, 0.95}, {0.95, 0.35, 0.45}};
    const double left = size * 0.14, width = size * 0.72;
    const double middle = size * 0.40, amplitude = size * 0.17;
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    for (int phase = 2; phase >= 0; --phase) {
        cairo_set_source_rgb(cr, colours[phase][0], colours[phase][1], colours[phase][2]);
        cairo_set_line_width(cr, size * (phase == 0 ? 0.045 : 0.025));
        for (int i = 0; i <= 64; ++i) {
            const double t = i / 64.0;
            const double y = middle - amplitude * std::sin(2 * pi * (1.5 * t - phase / 3.0));
            if (i == 0)
                cairo_move_to(cr, left + width * t, y);
            else
                cairo_line_to(cr, left + width * t, y);
        }
        cairo_stroke(cr);
    }
}

// An event's on/off state over time.
void steps(cairo_t* cr, double size) {
    const double left = size * 0.14, width = size * 0.72;
    const double low = size * 0.82, high = size * 0.68;
    const double edges[] = {0.0, 0.22, 0.45, 0.62, 0.85, 1.0};
    cairo_set_source_rgb(cr, 0.40, 0.85, 0.45);
    cairo_set_line_width(cr, size * 0.035);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    bool on = false;
    cairo_move_to(cr, left, low);
    for (std::size_t i = 1; i < std::size(edges); ++i) {
        const double x = left + width * edges[i];
        cairo_line_to(cr, x, on ? high : low);
        if (i + 1 < std::size(edges)) {
            on = !on;
            cairo_line_to(cr, x, on ? high : low);
        }
    }
    cairo_stroke(cr);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::cerr << "usage: tavna-icon OUT.png [SIZE]\n";
        return 2;
    }
    const int size = argc == 3 ? std::atoi(argv[2]) : 256;
    if (size < 16 || size > 1024) {
        std::cerr << "tavna-icon: size must lie in 16..1024\n";
        return 2;
    }
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size, size);
    cairo_t* cr = cairo_create(surface);
    background(cr, size);
    grid(cr, size);
    waveform(cr, size);
    steps(cr, size);
    cairo_destroy(cr);
    const cairo_status_t status = cairo_surface_write_to_png(surface, argv[1]);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        std::cerr << "tavna-icon: " << argv[1] << ": " << cairo_status_to_string(status) << "\n";
        return 1;
    }
    return 0;
}
