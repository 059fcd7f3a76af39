#pragma once

#include "view/IStreamChannelsView.h"

namespace TavNA {

class ISvStreamChannelsView : public IStreamChannelsView {};

} // namespace TavNA
