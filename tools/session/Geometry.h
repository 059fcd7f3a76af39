#pragma once

namespace TavSession {

// Screen coordinates: pixels from the root window's top-left corner.
struct Point {
    int x = 0;
    int y = 0;
};

struct Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    Point centre() const { return {x + width / 2, y + height / 2}; }
    bool empty() const { return width <= 0 || height <= 0; }
    bool contains(Point p) const {
        return p.x >= x && p.y >= y && p.x < x + width && p.y < y + height;
    }
};

} // namespace TavSession
