#pragma once

#include "presenter/StreamChannelsPresenter.h"

namespace TavNA {

class GooseStreamChannelsPresenter final
    : public StreamChannelsPresenter<GooseStreamChannelPresenter, GooseStreamChannelsView> {};

} // namespace TavNA
