#include "model/GooseGroup.h"

namespace TavNA {

template class BasicGroup<GooseGroup, GooseChannel, TavIec61850Parser::Goose>;

} // namespace TavNA
