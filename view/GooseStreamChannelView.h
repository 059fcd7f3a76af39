#pragma once

#include "view/StreamChannelView.h"

namespace TavNA {

class GooseStreamChannelView final : public StreamChannelView<IGooseStreamChannelView> {};

} // namespace TavNA
