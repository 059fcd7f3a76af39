#pragma once

#include "view/StreamView.h"

namespace TavNA {

class SvStreamView final : public StreamView<ISvStreamView> {};

} // namespace TavNA
