#pragma once

#include "presenter/DescPresenter.h"
#include "scl/StreamMatch.h"
#include "view/SclDescView.h"

#include <optional>

namespace TavNA {

class SclDescPresenter : public DescPresenter<SclDescView> {
public:
    // `match`: the stream's control block, or nothing when none is configured.
    void fill(const std::optional<TavScl::MatchedStream>& match);
};

} // namespace TavNA
