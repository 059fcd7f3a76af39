#include "tools/session/HostSession.h"

#include "host/CommandLine.h"
#include "host/HostApplication.h"
#include "host/StyleSheet.h"
#include "tools/session/ScreenImage.h"
#include "tools/session/UiCall.h"

#include <gtkmm/dialog.h>
#include <gtkmm/main.h>
#include <gtkmm/window.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <thread>

namespace TavSession {

namespace {

// Runs on the main loop until the application's own loop is gone.
bool windUp() {
    for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
        auto* dialog = dynamic_cast<Gtk::Dialog*>(window);
        if (dialog != nullptr && dialog->get_visible())
            dialog->response(Gtk::RESPONSE_CANCEL);
    }
    if (Gtk::Main::level() > 0)
        Gtk::Main::quit();
    return Gtk::Main::level() > 0;
}

// The screen as it was when a session failed, where the run asks for it.
void saveScreenForDiagnosis() {
    const char* path = std::getenv("TAVNA_SESSION_FAILURE_SHOT");
    if (path == nullptr || *path == '\0')
        return;
    try {
        onUi([path] { ScreenImage::grab({0, 0, 1 << 14, 1 << 14}).savePng(path); });
        std::cerr << "session: the screen at the failure is in " << path << std::endl;
    } catch (const std::exception& e) {
        std::cerr << "session: no screenshot of the failure: " << e.what() << std::endl;
    }
}

} // namespace

int runHostSession(const HostRun& run, const std::function<void()>& user) {
    // This process is not the executable, so the module beside it is named.
    const auto module = std::filesystem::path(run.executable).parent_path() / "modules" /
                        "libtavna-network-analyzer.so";
    std::vector<std::string> words{run.executable, "--module", module.string()};
    words.insert(words.end(), run.arguments.begin(), run.arguments.end());
    std::vector<char*> argv;
    for (auto& w : words)
        argv.push_back(w.data());
    argv.push_back(nullptr);

    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(run.workingFolder);
    TavHost::loadStyleSheet();
    int code = 0;
    std::exception_ptr failure;
    std::atomic<bool> userDone{false};
    {
        TavHost::HostApplication application(
            TavHost::CommandLine::parse(static_cast<int>(words.size()), argv.data()));
        std::thread person([&] {
            try {
                user();
            } catch (...) {
                failure = std::current_exception();
                saveScreenForDiagnosis();
            }
            userDone = true;
            g_idle_add([](gpointer) { return windUp() ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE; },
                       nullptr);
            g_main_context_wakeup(nullptr);
        });
        code = application.run();
        // The user may still be looking at the closed window.
        while (!userDone)
            g_main_context_iteration(nullptr, TRUE);
        person.join();
    }
    while (g_main_context_pending(nullptr))
        g_main_context_iteration(nullptr, FALSE);
    std::filesystem::current_path(before);
    if (failure)
        std::rethrow_exception(failure);
    return code;
}

} // namespace TavSession
