#include "tools/session/Display.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
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

// A folder of this process's own, removed as it ends.
const char* privateHome() {
    struct Owned {
        std::string path =
            (std::filesystem::temp_directory_path() / "tavna-desktop-XXXXXX").string();
        Owned() {
            if (mkdtemp(path.data()) == nullptr)
                path.clear();
        }
        ~Owned() {
            std::error_code ignored;
            if (!path.empty())
                std::filesystem::remove_all(path, ignored);
        }
    };
    static Owned owned;
    return owned.path.c_str();
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
    // The toolkit records every chosen file in the desktop's recent list, which
    // it rewrites with an fsync on the main loop. A data folder of our own
    // keeps the user's list, and its growing size, out of the tests.
    if (const char* data = privateHome(); *data != '\0')
        setenv("XDG_DATA_HOME", data, 1);
}

} // namespace TavSession
