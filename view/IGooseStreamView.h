#pragma once

#include "view/IStreamView.h"

namespace TavNA {

class IGooseStreamView : public IStreamView {};

} // namespace TavNA
