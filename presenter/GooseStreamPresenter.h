#pragma once

#include "presenter/StreamPresenter.h"

namespace TavNA {

class GooseStreamPresenter final : public StreamPresenter<GooseStreamTraits> {
public:
    using StreamPresenter::StreamPresenter;
};

} // namespace TavNA
