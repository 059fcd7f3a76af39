// A stand-in module for the host's tests. It writes what the host does to it,
// one line per event, into the file named by TAVNA_TEST_MODULE_RECORD, and can
// close itself (TAVNA_TEST_MODULE_CLOSE_MS), close the host's window as a user
// would (TAVNA_TEST_MODULE_CLOSE_HOST_MS) or refuse to start
// (TAVNA_TEST_MODULE_FAIL=null|throw).
#include "platform/view/GtkWidgetHelper.h"
#include "platform/view/IPresenter.h"
#include "platform/view/ModuleInterface.h"
#include "platform/view/Window.h"

#include <cstdlib>
#include <fstream>
#include <glibmm/main.h>
#include <stdexcept>

namespace {

std::string env(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

void record(const std::string& line) {
    const std::string path = env("TAVNA_TEST_MODULE_RECORD");
    if (path.empty())
        return;
    std::ofstream out(path, std::ios::app);
    out << line << '\n';
}

class TestModuleWindow : public Tav::Window, public Tav::IView {};

class TestShell : public Tav::ITavShell, public Tav::IPresenter, public Tav::IFileOpenable {
public:
    TestShell() {
        record("constructed");
        window_.signal_delete_event().connect([this](GdkEventAny*) {
            signalClosed.emit();
            return true;
        });
    }
    ~TestShell() override {
        closeTimer_.disconnect();
        record("destroyed");
    }

    void open(Tav::IView* parent) override {
        Gtk::Window* host = Tav::GtkWidgetHelper::getParentWindow(parent);
        record("open over " + (host ? std::string(host->get_title()) : "nothing") + " version " +
               packageVersion());
        window_.set_title(descriptor()->title());
        if (host != nullptr)
            window_.set_transient_for(*host);
        window_.show_all();
        if (const std::string ms = env("TAVNA_TEST_MODULE_CLOSE_MS"); !ms.empty())
            closeTimer_ = Glib::signal_timeout().connect(
                [this] {
                    record("closing");
                    signalClosed.emit();
                    return false;
                },
                std::stoi(ms));
        if (const std::string ms = env("TAVNA_TEST_MODULE_CLOSE_HOST_MS"); !ms.empty() && host)
            closeTimer_ = Glib::signal_timeout().connect(
                [host] {
                    record("closing the host");
                    host->close();
                    return false;
                },
                std::stoi(ms));
        signalOpened.emit();
    }

    std::shared_ptr<Tav::ShellDescriptor> descriptor() const override {
        static const auto shared =
            std::make_shared<Tav::ShellDescriptor>("no-such-icon.png", "Test module", true);
        return shared;
    }

    Tav::IView* getView() override { return &window_; }

    void openFiles(const std::vector<std::string>& paths) override {
        for (const auto& path : paths)
            record("file " + path);
    }

private:
    TestModuleWindow window_;
    sigc::connection closeTimer_;
};

} // namespace

extern "C" Tav::ITavShell* tavna_create_shell() {
    const std::string fail = env("TAVNA_TEST_MODULE_FAIL");
    if (fail == "null")
        return nullptr;
    if (fail == "throw")
        throw std::runtime_error("the test module refuses to start");
    return new TestShell;
}
