#include "model/SvGroup.h"

namespace TavNA {

template class BasicGroup<SvGroup, SvChannel, TavIec61850Parser::Sv>;

} // namespace TavNA
