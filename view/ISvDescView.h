#pragma once

#include "platform/view/IView.h"

#include <string>

namespace TavNA {

class ISvDescView : public Tav::IView {
public:
    ~ISvDescView() override = default;
    virtual void setSvId(const std::string& text) = 0;
    virtual void setAppId(const std::string& text) = 0;
    virtual void setSimulation(bool simulation) = 0;
    virtual void clear() = 0;
};

} // namespace TavNA
