#pragma once

namespace Tav {

struct PointF {
    float x = 0.0f;
    float y = 0.0f;
};

} // namespace Tav
