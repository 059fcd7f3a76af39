#pragma once

#include "view/IStreamChannelsView.h"

namespace TavNA {

class IGooseStreamChannelsView : public IStreamChannelsView {};

} // namespace TavNA
