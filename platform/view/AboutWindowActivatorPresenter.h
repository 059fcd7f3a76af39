#pragma once

#include "platform/view/IView.h"

#include <string>

namespace Tav {

// The about box: title, version and an icon. Without an explicit icon it shows
// the application's default icon, which the host sets from the module's
// descriptor when that file exists.
class AboutWindowActivatorPresenter {
public:
    static void show(IView* parent, const std::string& title, const std::string& version);
    // `iconPath` is used only if the file can be loaded.
    static void show(IView* parent, const std::string& title, const std::string& version,
                     const std::string& iconPath);
};

} // namespace Tav
