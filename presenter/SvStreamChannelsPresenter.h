#pragma once

#include "presenter/StreamChannelsPresenter.h"

namespace TavNA {

class SvStreamChannelsPresenter final
    : public StreamChannelsPresenter<SvStreamChannelPresenter, SvStreamChannelsView> {};

} // namespace TavNA
