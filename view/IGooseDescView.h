#pragma once

#include "platform/view/IView.h"

#include <string>

namespace TavNA {

class IGooseDescView : public Tav::IView {
public:
    ~IGooseDescView() override = default;
    virtual void clear() = 0;
    virtual void setAppId(const std::string& text) = 0;
    virtual void setGoCbRef(const std::string& text) = 0;
    virtual void setDataSet(const std::string& text) = 0;
    virtual void setGoId(const std::string& text) = 0;
    virtual void setSimulation(bool simulation) = 0;
};

} // namespace TavNA
