#include "platform/view/oscillograph/SpanRaster.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace TavView {

std::optional<SpanRaster> SpanRaster::onto(const Cairo::RefPtr<Cairo::Context>& cr,
                                           const Rect& clip) {
    Cairo::RefPtr<Cairo::Surface> target = cr->get_target();
    if (!target || target->get_type() != Cairo::SURFACE_TYPE_IMAGE)
        return std::nullopt;
    Cairo::Matrix matrix;
    cr->get_matrix(matrix);
    double dx = 0.0, dy = 0.0;
    target->get_device_offset(dx, dy);
    if (matrix.xx != 1.0 || matrix.yy != 1.0 || matrix.xy != 0.0 || matrix.yx != 0.0 ||
        matrix.x0 != 0.0 || matrix.y0 != 0.0 || dx != 0.0 || dy != 0.0)
        return std::nullopt;
    auto image = Cairo::RefPtr<Cairo::ImageSurface>::cast_static(target);
    const Cairo::Format format = image->get_format();
    if (format != Cairo::FORMAT_RGB24 && format != Cairo::FORMAT_ARGB32)
        return std::nullopt;
    image->flush();
    SpanRaster raster(image);
    raster.data_ = image->get_data();
    raster.stride_ = image->get_stride();
    raster.left_ = std::max(0, static_cast<int>(std::ceil(clip.x)));
    raster.top_ = std::max(0, static_cast<int>(std::ceil(clip.y)));
    raster.right_ = std::min(image->get_width(), static_cast<int>(std::floor(clip.right()))) - 1;
    raster.bottom_ = std::min(image->get_height(), static_cast<int>(std::floor(clip.bottom()))) - 1;
    if (raster.data_ == nullptr)
        return std::nullopt;
    return raster;
}

void SpanRaster::setColor(const Tav::Series& series) {
    alpha_ = static_cast<unsigned>(std::lround(series.alpha() * 255.0));
    const auto channel = [&](double c) {
        return static_cast<std::uint32_t>(std::lround(c * alpha_));
    };
    premultiplied_ = (alpha_ << 24) | (channel(series.red()) << 16) |
                     (channel(series.green()) << 8) | channel(series.blue());
}

void SpanRaster::blend(std::uint32_t* pixel) const {
    const unsigned keep = 255 - alpha_;
    std::uint32_t out = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const unsigned src = (premultiplied_ >> shift) & 0xFF;
        const unsigned dst = (*pixel >> shift) & 0xFF;
        out |= std::min(255u, src + (dst * keep + 127) / 255) << shift;
    }
    *pixel = out;
}

void SpanRaster::vertical(int x, int y0, int y1) {
    if (y1 < y0)
        std::swap(y0, y1);
    if (x < left_ || x > right_)
        return;
    y0 = std::max(y0, top_);
    y1 = std::min(y1, bottom_);
    if (y0 > y1)
        return;
    // Locals, since a store through the pixel pointer could alias the members
    // and would make the compiler reload them for every pixel.
    const std::ptrdiff_t stride = stride_;
    const std::uint32_t color = premultiplied_;
    unsigned char* at = data_ + y0 * stride + x * 4;
    if (alpha_ == 255) {
        for (int y = y0; y <= y1; ++y, at += stride)
            *reinterpret_cast<std::uint32_t*>(at) = color;
        return;
    }
    for (int y = y0; y <= y1; ++y, at += stride)
        blend(reinterpret_cast<std::uint32_t*>(at));
}

void SpanRaster::horizontal(int x0, int x1, int y) {
    if (x1 < x0)
        std::swap(x0, x1);
    if (y < top_ || y > bottom_)
        return;
    x0 = std::max(x0, left_);
    x1 = std::min(x1, right_);
    if (x0 > x1)
        return;
    auto* row = reinterpret_cast<std::uint32_t*>(data_ + y * stride_);
    if (alpha_ == 255) {
        std::fill(row + x0, row + x1 + 1, premultiplied_);
        return;
    }
    for (int x = x0; x <= x1; ++x)
        blend(row + x);
}

void SpanRaster::finish() {
    surface_->mark_dirty();
}

} // namespace TavView
