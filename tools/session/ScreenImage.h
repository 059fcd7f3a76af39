#pragma once

#include "tools/session/Geometry.h"

#include <gdkmm/pixbuf.h>

#include <cstdint>
#include <string>

namespace TavSession {

struct Rgb {
    std::uint8_t r = 0, g = 0, b = 0;
};

// A copy of what the X server shows: the same pixels a screenshot tool reads.
class ScreenImage {
public:
    // Main thread only. The area is cut to the screen.
    static ScreenImage grab(Rect area);

    Rect area() const { return area_; }
    // Pixels inside `where` (screen coordinates) within `tolerance` of `colour`
    // in each of red, green and blue.
    int countNear(Rect where, Rgb colour, int tolerance) const;
    Rgb at(Point p) const;
    void savePng(const std::string& path) const;

private:
    Glib::RefPtr<Gdk::Pixbuf> pixels_;
    Rect area_;
};

} // namespace TavSession
