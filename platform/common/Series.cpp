#include "platform/common/Series.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace Tav {

namespace {

template <typename Pick>
void rangeOf(const std::vector<PointF>& points, Pick pick, float& min, float& max) {
    float lo = std::numeric_limits<float>::infinity();
    float hi = -std::numeric_limits<float>::infinity();
    for (const PointF& p : points) {
        const float v = pick(p);
        if (std::isnan(v))
            continue;
        lo = std::min(lo, v);
        hi = std::max(hi, v);
    }
    if (lo > hi) {
        lo = 0.0f;
        hi = 0.0f;
    }
    min = lo;
    max = hi;
}

} // namespace

void Series::getRangeX(float& min, float& max) const {
    rangeOf(
        points, [](const PointF& p) { return p.x; }, min, max);
}

void Series::getRangeY(float& min, float& max) const {
    rangeOf(
        points, [](const PointF& p) { return p.y; }, min, max);
}

void Series::getRangeXY(float& minX, float& maxX, float& minY, float& maxY) const {
    getRangeX(minX, maxX);
    getRangeY(minY, maxY);
}

double Series::channel(int byteIndex) const {
    unsigned char bytes[4];
    std::memcpy(bytes, &color, sizeof bytes);
    return bytes[byteIndex] / 255.0;
}

} // namespace Tav
