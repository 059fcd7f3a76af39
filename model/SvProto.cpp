#include "model/SvProto.h"

namespace TavNA {

template class TickRelayList<SvChannel, SvChannel*>;
template class TickRelayList<SvGroup, SvChannel*, SvGroup*>;
template class BasicProto<SvGroup>;

} // namespace TavNA
