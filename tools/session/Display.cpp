#include "tools/session/Display.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

namespace TavSession {

namespace {

[[noreturn]] void reexecUnderXvfb(int argc, char** argv, const char* screen) {
    std::vector<std::string> args{"xvfb-run", "-a", "-s",
                                  std::string("-screen 0 ") + screen + " -nolisten tcp"};
    for (int i = 0; i < argc; ++i)
        args.emplace_back(argv[i]);
    std::vector<char*> cargs;
    for (auto& a : args)
        cargs.push_back(a.data());
    cargs.push_back(nullptr);
    setenv("TAVNA_UNDER_XVFB", "1", 1);
    execvp("xvfb-run", cargs.data());
    std::perror("xvfb-run");
    std::exit(127);
}

} // namespace

void ensureDisplay(int argc, char** argv, const char* screen) {
    const char* display = std::getenv("DISPLAY");
    if ((display == nullptr || *display == '\0') && std::getenv("TAVNA_UNDER_XVFB") == nullptr)
        reexecUnderXvfb(argc, argv, screen);
    setenv("GTK_THEME", "Adwaita", 1);
    setenv("NO_AT_BRIDGE", "1", 1);
    // File choosers save their state; keep that off the user's settings.
    setenv("GSETTINGS_BACKEND", "memory", 1);
}

} // namespace TavSession
