#pragma once

#include "view/StreamView.h"

namespace TavNA {

class GooseStreamView final : public StreamView<IGooseStreamView> {};

} // namespace TavNA
