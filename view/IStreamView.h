#pragma once

#include "platform/view/IView.h"
#include "view/ISelectable.h"

#include <string>

namespace TavNA {

// What SV and GOOSE stream entries share: a caption, its tooltip, the channel
// box below it, and the picked mark.
class IStreamView : public Tav::IView, public ISelectable {
public:
    ~IStreamView() override = default;
    virtual void setName(const std::string& text) = 0;
    virtual void setNameTooltip(const std::string& text) = 0;
    virtual void addView(Tav::IView* view) = 0;
    void select() override = 0;
    void unselect() override = 0;
};

} // namespace TavNA
