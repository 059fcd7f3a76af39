#pragma once

#include "model/BasicGroup.h"
#include "model/SvChannel.h"
#include "platform/parser/StreamRecords.h"

namespace TavNA {

// One SV stream; its records point into the capture database.
class SvGroup final : public BasicGroup<SvGroup, SvChannel, TavIec61850Parser::Sv> {
public:
    const Records& getSvs() const { return getRecords(); }
};

} // namespace TavNA
