#pragma once

namespace Tav {

// Something with an extent on both axes.
class IBorderable {
public:
    virtual ~IBorderable() = default;
    virtual void getRangeX(float& min, float& max) const = 0;
    virtual void getRangeY(float& min, float& max) const = 0;
    virtual void getRangeXY(float& minX, float& maxX, float& minY, float& maxY) const = 0;
};

} // namespace Tav
