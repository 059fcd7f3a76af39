#pragma once

#include "model/GooseGroup.h"
#include "model/SvGroup.h"
#include "presenter/DescPresenter.h"
#include "view/EthernetDescView.h"

namespace TavNA {

class EthernetDescPresenter : public DescPresenter<EthernetDescView> {
public:
    void fillSvGroup(const SvGroup* group);
    void fillGooseGroup(const GooseGroup* group);

private:
    template <typename Record> void _fill(const Record& record);
};

} // namespace TavNA
