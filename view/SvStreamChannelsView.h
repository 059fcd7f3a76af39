#pragma once

#include "view/StreamChannelsView.h"

namespace TavNA {

class SvStreamChannelsView final : public StreamChannelsView<ISvStreamChannelsView> {};

} // namespace TavNA
