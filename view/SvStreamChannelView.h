#pragma once

#include "view/StreamChannelView.h"

namespace TavNA {

class SvStreamChannelView final : public StreamChannelView<ISvStreamChannelView> {};

} // namespace TavNA
