#pragma once

#include "platform/view/oscillograph/Oscillograph.h"

namespace TavNA {

// The module's oscillograph: the host widget set up to fill its panel.
class OscillographView : public TavView::Oscillograph {
public:
    OscillographView();
};

} // namespace TavNA
