#pragma once

#include "platform/view/IView.h"

#include <string>

namespace TavNA {

class IEthernetDescView : public Tav::IView {
public:
    ~IEthernetDescView() override = default;
    virtual void setSrcMac(const std::string& text) = 0;
    virtual void setDstMac(const std::string& text) = 0;
    virtual void setHsrId(const std::string& text) = 0;
    virtual void setHsrLine(const std::string& text) = 0;
    virtual void setVlanId(const std::string& text) = 0;
    virtual void setPrpId(const std::string& text) = 0;
    virtual void setPrpLine(const std::string& text) = 0;
    virtual void clear() = 0;
};

} // namespace TavNA
