#include "platform/view/ModuleInterface.h"

namespace Tav {

// Out of line so that the type information of both interfaces lives in this
// library alone, and the host's casts agree with modules loaded at run time.
ITavShell::~ITavShell() = default;
IFileOpenable::~IFileOpenable() = default;

} // namespace Tav
