#pragma once

#include "platform/view/IView.h"

#include <string>

namespace Tav {

// Opens a help document with the desktop's default application. A missing
// document, or one nothing can open, gives a message box naming its path.
class HelpView {
public:
    // A relative path is taken from the working folder.
    static void show(IView* parent, const std::string& path);
};

} // namespace Tav
