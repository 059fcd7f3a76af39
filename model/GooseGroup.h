#pragma once

#include "model/BasicGroup.h"
#include "model/GooseChannel.h"
#include "platform/parser/StreamRecords.h"

namespace TavNA {

// One GOOSE stream; its records point into the capture database.
class GooseGroup final : public BasicGroup<GooseGroup, GooseChannel, TavIec61850Parser::Goose> {
public:
    const Records& getGooses() const { return getRecords(); }
};

} // namespace TavNA
