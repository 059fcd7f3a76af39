#pragma once

#include "view/StreamChannelsView.h"

namespace TavNA {

class GooseStreamChannelsView final : public StreamChannelsView<IGooseStreamChannelsView> {};

} // namespace TavNA
