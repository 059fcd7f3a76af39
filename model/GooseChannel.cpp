#include "model/GooseChannel.h"

namespace TavNA {

template class BasicChannel<GooseChannel, GooseChannelTraits>;

} // namespace TavNA
