// Test main for everything that needs a display: makes sure one exists (a
// private Xvfb when the caller has none), initialises GTK, then runs the tests.
#include <gtest/gtest.h>
#include <gtkmm/main.h>

#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

bool hasDisplay() {
    const char* d = std::getenv("DISPLAY");
    return d != nullptr && *d != '\0';
}

[[noreturn]] void reexecUnderXvfb(int argc, char** argv) {
    std::vector<std::string> args{"xvfb-run", "-a", "-s", "-screen 0 1600x1000x24 -nolisten tcp"};
    for (int i = 0; i < argc; ++i)
        args.emplace_back(argv[i]);
    std::vector<char*> cargs;
    for (auto& a : args)
        cargs.push_back(a.data());
    cargs.push_back(nullptr);
    setenv("TAVNA_UNDER_XVFB", "1", 1);
    execvp("xvfb-run", cargs.data());
    perror("xvfb-run");
    std::exit(127);
}

} // namespace

int main(int argc, char** argv) {
    if (!hasDisplay() && std::getenv("TAVNA_UNDER_XVFB") == nullptr)
        reexecUnderXvfb(argc, argv);
    // Tests must not depend on the developer's theme or accessibility bus.
    setenv("GTK_THEME", "Adwaita", 1);
    setenv("NO_AT_BRIDGE", "1", 1);
    // File choosers save their state; keep that off the developer's settings.
    setenv("GSETTINGS_BACKEND", "memory", 1);
    testing::InitGoogleTest(&argc, argv);
    Gtk::Main kit(argc, argv);
    return RUN_ALL_TESTS();
}
