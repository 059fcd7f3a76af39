#pragma once

#include "model/GooseGroup.h"
#include "presenter/DescPresenter.h"
#include "view/GooseDescView.h"

namespace TavNA {

class GooseDescPresenter : public DescPresenter<GooseDescView> {
public:
    void fill(const GooseGroup* group);
};

} // namespace TavNA
