#pragma once

#include "model/BasicProto.h"
#include "model/SvGroupCollection.h"

namespace TavNA {

extern template class BasicProto<SvGroup>;

// The SV node of the stream tree (the database keeps its own record set of that name).
class SvProto final : public BasicProto<SvGroup> {};

} // namespace TavNA
