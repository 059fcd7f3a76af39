#pragma once

#include "platform/view/DialogResult.h"
#include "platform/view/IView.h"

#include <string>

namespace Tav {

// A modal message box over the window that holds `parent`.
class DialogPresenter {
public:
    // Blocks in a nested main loop until answered. `detail` goes under the
    // message in smaller type when not empty.
    static DialogResult show(IView* parent, const std::string& message, const std::string& detail,
                             DialogResult kind);
};

} // namespace Tav
