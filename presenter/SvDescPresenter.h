#pragma once

#include "model/SvGroup.h"
#include "presenter/DescPresenter.h"
#include "view/SvDescView.h"

namespace TavNA {

class SvDescPresenter : public DescPresenter<SvDescView> {
public:
    void fill(const SvGroup* group);
};

} // namespace TavNA
