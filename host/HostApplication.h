#pragma once

#include "host/CommandLine.h"
#include "host/HostWindow.h"
#include "platform/view/ITavShell.h"

#include <list>
#include <memory>

namespace TavHost {

// Runs one module over the host window and ends when no module is open.
class HostApplication {
public:
    explicit HostApplication(CommandLine commandLine);
    ~HostApplication();

    // Needs GTK initialised; returns the process exit code.
    int run();

    static constexpr int exitLoadFailure = 2;

private:
    struct OpenModule {
        std::unique_ptr<Tav::ITavShell> shell;
        Gtk::Widget* row = nullptr;
        bool closing = false;
    };

    bool openModule(const std::string& path);
    void handFiles(Tav::ITavShell& shell);
    void reportFailure(const std::string& message);
    void _onModuleClosed(OpenModule* module);
    void _onQuit();
    void closeModule(OpenModule* module);

    CommandLine commandLine_;
    HostWindow window_;
    // A list: modules are found again by address from their signals.
    std::list<OpenModule> modules_;
};

} // namespace TavHost
