#include "tools/session/ScreenImage.h"

#include "tools/session/UiCall.h"

#include <gdkmm/screen.h>
#include <gdkmm/window.h>

#include <algorithm>
#include <cstdlib>

namespace TavSession {

ScreenImage ScreenImage::grab(Rect area) {
    auto root = Gdk::Screen::get_default()->get_root_window();
    const int right = std::min(area.x + area.width, root->get_width());
    const int bottom = std::min(area.y + area.height, root->get_height());
    area.x = std::max(area.x, 0);
    area.y = std::max(area.y, 0);
    area.width = right - area.x;
    area.height = bottom - area.y;
    if (area.empty())
        throw SessionError("nothing of the asked area is on the screen");
    ScreenImage image;
    image.pixels_ = Gdk::Pixbuf::create(root, area.x, area.y, area.width, area.height);
    if (!image.pixels_)
        throw SessionError("the screen cannot be read");
    image.area_ = area;
    return image;
}

Rgb ScreenImage::at(Point p) const {
    if (!area_.contains(p))
        throw SessionError("point outside the grabbed area");
    const guint8* row = pixels_->get_pixels() + (p.y - area_.y) * pixels_->get_rowstride();
    const guint8* px = row + (p.x - area_.x) * pixels_->get_n_channels();
    return {px[0], px[1], px[2]};
}

int ScreenImage::countNear(Rect where, Rgb colour, int tolerance) const {
    const int left = std::max(where.x, area_.x), top = std::max(where.y, area_.y);
    const int right = std::min(where.x + where.width, area_.x + area_.width);
    const int bottom = std::min(where.y + where.height, area_.y + area_.height);
    int count = 0;
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            const Rgb c = at({x, y});
            if (std::abs(c.r - colour.r) <= tolerance && std::abs(c.g - colour.g) <= tolerance &&
                std::abs(c.b - colour.b) <= tolerance)
                ++count;
        }
    }
    return count;
}

void ScreenImage::savePng(const std::string& path) const {
    pixels_->save(path, "png");
}

} // namespace TavSession
