#pragma once

#include <string>

namespace TavHost {

// Applies the application's style sheet to every window on the default
// screen: "tavna.css" in the working folder if there is one, so that a user
// may restyle, else the one shipped beside the executable. Returns the file
// used, or "" when there is none or it cannot be read (the stock look stays).
std::string loadStyleSheet();

} // namespace TavHost
