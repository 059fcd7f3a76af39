#pragma once

#include "presenter/StreamChannelPresenter.h"

namespace TavNA {

class GooseStreamChannelPresenter final
    : public StreamChannelPresenter<GooseChannel, GooseStreamChannelView> {
public:
    using StreamChannelPresenter::StreamChannelPresenter;
};

} // namespace TavNA
