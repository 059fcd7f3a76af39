#pragma once

#include "presenter/StreamChannelPresenter.h"

namespace TavNA {

class SvStreamChannelPresenter final
    : public StreamChannelPresenter<SvChannel, SvStreamChannelView> {
public:
    using StreamChannelPresenter::StreamChannelPresenter;
};

} // namespace TavNA
