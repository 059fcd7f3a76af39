#include "host/HostApplication.h"

#include "platform/common/DataFiles.h"

#include "host/ModuleLoader.h"
#include "platform/common/Log.h"
#include "platform/view/DialogPresenter.h"
#include "platform/view/ModuleInterface.h"

#include <cstdlib>
#include <filesystem>
#include <glibmm/error.h>
#include <glibmm/main.h>
#include <gtkmm/main.h>
#include <gtkmm/messagedialog.h>
#include <iostream>

#ifndef TAVNA_VERSION
#define TAVNA_VERSION "0"
#endif

namespace TavHost {

namespace {

bool unattended() {
    const char* value = std::getenv("TAVNA_NO_DIALOGS");
    return value != nullptr && *value != '\0' && std::string(value) != "0";
}

// Unattended runs still put the dialog up, so that it is exercised, but answer
// it themselves instead of waiting for a person.
void answerMessageDialogsSoon() {
    Glib::signal_timeout().connect(
        [] {
            for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
                auto* dialog = dynamic_cast<Gtk::MessageDialog*>(window);
                if (dialog != nullptr && dialog->get_visible()) {
                    dialog->response(Gtk::RESPONSE_OK);
                    return false;
                }
            }
            return true;
        },
        50);
}

void useIconAsDefault(const std::string& iconPath) {
    std::error_code ec;
    if (iconPath.empty() || !std::filesystem::is_regular_file(iconPath, ec))
        return;
    try {
        Gtk::Window::set_default_icon_from_file(iconPath);
    } catch (const Glib::Error& e) {
        TavLog::Log::writeError("Icon " + iconPath + " cannot be read: " + e.what());
    }
}

} // namespace

HostApplication::HostApplication(CommandLine commandLine) : commandLine_(std::move(commandLine)) {
    window_.signalQuit.connect(sigc::mem_fun(*this, &HostApplication::_onQuit));
}

HostApplication::~HostApplication() {
    // Modules go before the window they were opened over.
    modules_.clear();
}

int HostApplication::run() {
    window_.show_all();
    if (!openModule(commandLine_.modulePath))
        return exitLoadFailure;
    Gtk::Main::run();
    return 0;
}

bool HostApplication::openModule(const std::string& path) {
    std::unique_ptr<Tav::ITavShell> shell;
    std::shared_ptr<Tav::ShellDescriptor> descriptor;
    try {
        shell = loadModule(path);
        shell->setPackageVersion(TAVNA_VERSION);
        descriptor = shell->descriptor();
    } catch (const ModuleLoadError& e) {
        reportFailure(e.what());
        return false;
    } catch (const std::exception& e) {
        reportFailure("module " + path + ": failed to describe itself: " + e.what());
        return false;
    }
    const std::string title = descriptor ? descriptor->title() : path;
    const std::string icon = descriptor ? Tav::dataFile(descriptor->iconPath()) : "";
    useIconAsDefault(icon);

    OpenModule& module = modules_.emplace_back();
    module.shell = std::move(shell);
    module.row = window_.addModule(title, icon);
    OpenModule* handle = &module;
    module.shell->signalOpened.connect(
        [title] { TavLog::Log::writeInfo("Модуль открыт: " + title); });
    module.shell->signalClosed.connect([this, handle] { _onModuleClosed(handle); });
    TavLog::Log::writeInfo("Открытие модуля: " + title + " (" + path + ")");
    try {
        module.shell->open(&window_);
    } catch (const std::exception& e) {
        window_.removeModule(module.row);
        modules_.pop_back();
        reportFailure("module " + path + ": failed to open: " + e.what());
        return false;
    }
    handFiles(*module.shell);
    return true;
}

void HostApplication::handFiles(Tav::ITavShell& shell) {
    if (commandLine_.files.empty())
        return;
    auto* openable = dynamic_cast<Tav::IFileOpenable*>(&shell);
    if (openable == nullptr) {
        std::cerr << "tavna: the module opens no files; ignored:";
        for (const auto& f : commandLine_.files)
            std::cerr << ' ' << f;
        std::cerr << std::endl;
        return;
    }
    // The module sees what its own dialog would give it: absolute paths.
    std::vector<std::string> paths;
    for (const auto& f : commandLine_.files) {
        std::error_code ec;
        const auto absolute = std::filesystem::absolute(f, ec);
        paths.push_back(ec ? f : absolute.string());
    }
    openable->openFiles(paths);
}

void HostApplication::reportFailure(const std::string& message) {
    std::cerr << "tavna: " << message << std::endl;
    TavLog::Log::writeError(message);
    if (unattended())
        answerMessageDialogsSoon();
    Tav::DialogPresenter::show(&window_, "Не удалось загрузить модуль", message,
                               Tav::DialogResult::Error);
}

// The shell is still inside its own signal here; it goes from the main loop.
void HostApplication::_onModuleClosed(OpenModule* module) {
    if (module->closing)
        return;
    module->closing = true;
    Glib::signal_idle().connect_once([this, module] { closeModule(module); });
}

void HostApplication::closeModule(OpenModule* module) {
    window_.removeModule(module->row);
    modules_.remove_if([module](const OpenModule& m) { return &m == module; });
    TavLog::Log::writeInfo("Модуль закрыт");
    if (modules_.empty())
        Gtk::Main::quit();
}

void HostApplication::_onQuit() {
    for (OpenModule& module : modules_)
        _onModuleClosed(&module);
    if (modules_.empty())
        Gtk::Main::quit();
}

} // namespace TavHost
