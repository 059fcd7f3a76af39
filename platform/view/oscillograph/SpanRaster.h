#pragma once

#include "platform/view/oscillograph/PlotLayout.h"

#include <cairomm/context.h>
#include <cairomm/surface.h>

#include <cstdint>
#include <optional>

namespace TavView {

// Writes one-pixel lines along rows and columns straight into an image
// surface's memory. Cairo's general path filler costs microseconds per bar,
// which is far too slow for thousands of curve columns a frame; axis-aligned
// spans need no rasteriser at all.
class SpanRaster {
public:
    // A raster over the context's target, clipped to `clip`; none when the
    // target is not an image in a known format or the context is transformed.
    static std::optional<SpanRaster> onto(const Cairo::RefPtr<Cairo::Context>& cr,
                                          const Rect& clip);

    void setColor(const Tav::Series& series);
    // Both ends included; the ends may come in either order.
    void vertical(int x, int y0, int y1);
    void horizontal(int x0, int x1, int y);
    // Tells Cairo the memory changed behind its back.
    void finish();

private:
    explicit SpanRaster(Cairo::RefPtr<Cairo::ImageSurface> surface)
        : surface_(std::move(surface)) {}
    void blend(std::uint32_t* pixel) const;

    Cairo::RefPtr<Cairo::ImageSurface> surface_;
    unsigned char* data_ = nullptr;
    int stride_ = 0;
    int left_ = 0, top_ = 0, right_ = 0, bottom_ = 0; // inclusive clip
    std::uint32_t premultiplied_ = 0;
    unsigned alpha_ = 255;
};

} // namespace TavView
