#pragma once

#include "model/BasicProto.h"
#include "model/GooseGroupCollection.h"

namespace TavNA {

extern template class BasicProto<GooseGroup>;

// The GOOSE node of the stream tree.
class GooseProto final : public BasicProto<GooseGroup> {};

} // namespace TavNA
