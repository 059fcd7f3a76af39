#pragma once

#include "view/IStreamView.h"

namespace TavNA {

class ISvStreamView : public IStreamView {};

} // namespace TavNA
