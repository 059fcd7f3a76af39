#pragma once

#include "view/IStreamChannelView.h"

namespace TavNA {

class IGooseStreamChannelView : public IStreamChannelView {};

} // namespace TavNA
