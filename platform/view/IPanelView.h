#pragma once

#include "platform/view/IView.h"

#include <string>

namespace Tav {

// A titled panel made by the panel manager around a content view.
class IPanelView : public IView {
public:
    // The panel never gets smaller than this (0 leaves it to the content).
    virtual void setMinimumSize(int width, int height) = 0;
    // The size the panel is given when the layout first appears.
    virtual void setPreferredSize(int width, int height) = 0;

    virtual std::string title() const = 0;
    // A collapsed panel shows only its title bar.
    virtual void setCollapsed(bool collapsed) = 0;
    virtual bool isCollapsed() const = 0;
};

} // namespace Tav
