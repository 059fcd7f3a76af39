#include "platform/view/ShellDescriptor.h"

#include <utility>

namespace Tav {

ShellDescriptor::ShellDescriptor(std::string iconPath, std::string title, bool listed)
    : iconPath_(std::move(iconPath)), title_(std::move(title)), listed_(listed) {}

} // namespace Tav
