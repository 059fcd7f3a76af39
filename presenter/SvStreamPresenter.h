#pragma once

#include "presenter/StreamPresenter.h"

namespace TavNA {

class SvStreamPresenter final : public StreamPresenter<SvStreamTraits> {
public:
    using StreamPresenter::StreamPresenter;
};

} // namespace TavNA
