#include "platform/view/oscillograph/CoordinateMapper.h"

#include <cmath>

namespace TavView {

AxisMap::AxisMap(double valueFrom, double valueTo, double pixelFrom, double pixelTo)
    : valueFrom_(valueFrom), valueTo_(valueTo), pixelFrom_(pixelFrom) {
    const double span = valueTo - valueFrom;
    // An empty span would divide by zero; any scale keeps its single value on pixelFrom.
    scale_ = std::abs(span) > 0.0 ? (pixelTo - pixelFrom) / span : 1.0;
    if (scale_ == 0.0)
        scale_ = 1.0;
}

} // namespace TavView
