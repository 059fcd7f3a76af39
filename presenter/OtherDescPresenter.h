#pragma once

#include "model/GooseGroup.h"
#include "model/SvGroup.h"
#include "presenter/DescPresenter.h"
#include "view/OtherDescView.h"

namespace TavNA {

class OtherDescPresenter : public DescPresenter<OtherDescView> {
public:
    void fillSvGroup(const SvGroup* group);
    void fillGooseGroup(const GooseGroup* group);

private:
    template <typename Group> void _fill(const Group& group);
};

} // namespace TavNA
