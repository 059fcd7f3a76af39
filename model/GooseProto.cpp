#include "model/GooseProto.h"

namespace TavNA {

template class TickRelayList<GooseChannel, GooseChannel*>;
template class TickRelayList<GooseGroup, GooseChannel*, GooseGroup*>;
template class BasicProto<GooseGroup>;

} // namespace TavNA
