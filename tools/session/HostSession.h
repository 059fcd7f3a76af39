#pragma once

#include <functional>
#include <string>
#include <vector>

namespace TavSession {

struct HostRun {
    std::string executable;             // `tavna`: the module and style sheet are found beside it
    std::string workingFolder;          // where the help documents and icons are
    std::vector<std::string> arguments; // what follows the executable's name
};

// Runs the host application on the calling thread, which must be the one
// GTK was initialised on, and `user` on a second thread that plays the person
// at the keyboard. Returns the application's exit code when both have ended;
// the user's exception, if any, is thrown again here. A user that ends while
// the application still runs has its dialogs cancelled and the main loop
// ended, so a failed session never leaves the window up.
int runHostSession(const HostRun& run, const std::function<void()>& user);

} // namespace TavSession
