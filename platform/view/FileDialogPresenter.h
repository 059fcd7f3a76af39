#pragma once

#include "platform/view/IView.h"

#include <string>
#include <utility>
#include <vector>

namespace Tav {

// A modal file chooser over the window that holds `parent`.
class FileDialogPresenter {
public:
    // Each filter is (display name, glob patterns apart by spaces); the first
    // one is active.
    // `save` asks for a file to write instead of one to open. Returns the
    // chosen path, or "" when cancelled.
    static std::string show(IView* parent, const std::string& title,
                            const std::vector<std::pair<std::string, std::string>>& filters,
                            bool save);
};

} // namespace Tav
