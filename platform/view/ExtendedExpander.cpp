#include "platform/view/ExtendedExpander.h"

namespace Tav {

ExtendedExpander::ExtendedExpander(bool fillHeader) {
    set_label_fill(fillHeader);
    // The signal's own blocked state must decide, so forward through emit().
    property_expanded().signal_changed().connect([this] { expandedChanged_.emit(); });
}

} // namespace Tav
