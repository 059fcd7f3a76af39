#pragma once

#include "view/DescSection.h"
#include "view/IOtherDescView.h"

namespace TavNA {

class OtherDescView : public IOtherDescView, public DescSection {
public:
    enum Row { PkgCount };

    OtherDescView();
    void clear() override;
    void setPkgCount(const std::string& text) override;
};

} // namespace TavNA
