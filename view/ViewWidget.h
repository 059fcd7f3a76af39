#pragma once

#include "platform/view/IView.h"

#include <utility>

namespace TavNA {

// A plain gtkmm widget that can also be handed around as a view, for the
// parts of a view that containers place one by one.
template <typename Widget> class ViewWidget : public Widget, public Tav::IView {
public:
    template <typename... Args>
    explicit ViewWidget(Args&&... args) : Widget(std::forward<Args>(args)...) {}
};

} // namespace TavNA
