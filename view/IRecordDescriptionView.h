#pragma once

#include "platform/view/IView.h"

namespace TavNA {

class IRecordDescriptionView : public Tav::IView {
public:
    ~IRecordDescriptionView() override = default;
    virtual void setView(Tav::IView* view) = 0;
    virtual void clear() = 0;
};

} // namespace TavNA
