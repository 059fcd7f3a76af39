#pragma once

#include "platform/view/IView.h"

#include <string>

namespace TavNA {

// One channel's check button.
class IStreamChannelView : public Tav::IView {
public:
    ~IStreamChannelView() override = default;
    virtual void addView(Tav::IView* view) = 0;
    virtual void setName(const std::string& text) = 0;
};

} // namespace TavNA
