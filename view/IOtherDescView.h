#pragma once

#include "platform/view/IView.h"

#include <string>

namespace TavNA {

class IOtherDescView : public Tav::IView {
public:
    ~IOtherDescView() override = default;
    virtual void clear() = 0;
    virtual void setPkgCount(const std::string& text) = 0;
};

} // namespace TavNA
