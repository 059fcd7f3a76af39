#pragma once

namespace Tav {

// Common base of every view; concrete views also derive a gtkmm widget, and
// containers find it with a dynamic cast.
class IView {
public:
    virtual ~IView() = default;
};

} // namespace Tav
