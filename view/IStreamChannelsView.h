#pragma once

#include "platform/view/IView.h"

namespace TavNA {

// The box of one stream's channel check buttons.
class IStreamChannelsView : public Tav::IView {
public:
    ~IStreamChannelsView() override = default;
    virtual void addView(Tav::IView* view) = 0;
};

} // namespace TavNA
