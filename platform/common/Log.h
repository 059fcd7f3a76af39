#pragma once

#include <string>

namespace TavLog {

// The application log: one line per event with time and level, appended to
// $XDG_STATE_HOME/tavna/tavna.log (else ~/.local/state/tavna/tavna.log) and
// echoed to standard error. Callable from any thread; a log that cannot be
// written never stops the program.
class Log {
public:
    static void writeInfo(const std::string& message);
    static void writeError(const std::string& message);

    // Where the lines go; for tests and for the about box.
    static std::string filePath();
    // Redirects the log (tests); an empty path restores the default.
    static void setFilePath(const std::string& path);
    // Whether lines are echoed to standard error (on by default).
    static void setEcho(bool echo);
};

} // namespace TavLog
