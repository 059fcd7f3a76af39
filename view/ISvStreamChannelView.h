#pragma once

#include "view/IStreamChannelView.h"

namespace TavNA {

class ISvStreamChannelView : public IStreamChannelView {};

} // namespace TavNA
