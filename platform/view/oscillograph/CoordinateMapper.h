#pragma once

namespace TavView {

// A linear map from a span of values onto a span of pixels. The pixel span may
// run backwards (values grow upwards while y grows downwards).
class AxisMap {
public:
    AxisMap() = default;
    AxisMap(double valueFrom, double valueTo, double pixelFrom, double pixelTo);

    double toPixel(double value) const { return pixelFrom_ + (value - valueFrom_) * scale_; }
    double toValue(double pixel) const { return valueFrom_ + (pixel - pixelFrom_) / scale_; }
    double valueFrom() const { return valueFrom_; }
    double valueTo() const { return valueTo_; }

private:
    double valueFrom_ = 0.0;
    double valueTo_ = 1.0;
    double pixelFrom_ = 0.0;
    double scale_ = 1.0;
};

// Time (seconds) <-> x and value <-> y for one rectangle of the plot.
class CoordinateMapper {
public:
    CoordinateMapper() = default;
    CoordinateMapper(double timeFrom, double timeTo, double left, double width, double valueLo,
                     double valueHi, double top, double height)
        : time_(timeFrom, timeTo, left, left + width), value_(valueLo, valueHi, top + height, top) {
    }

    double timeToX(double t) const { return time_.toPixel(t); }
    double xToTime(double x) const { return time_.toValue(x); }
    double valueToY(double v) const { return value_.toPixel(v); }
    double yToValue(double y) const { return value_.toValue(y); }
    const AxisMap& time() const { return time_; }
    const AxisMap& value() const { return value_; }

private:
    AxisMap time_;
    AxisMap value_;
};

} // namespace TavView
