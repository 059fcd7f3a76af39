#include "host/StyleSheet.h"

#include "platform/common/Log.h"

#include <filesystem>
#include <gdkmm/screen.h>
#include <glibmm/error.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/stylecontext.h>

namespace TavHost {

std::string loadStyleSheet(const char* argv0) {
    namespace fs = std::filesystem;
    const char* const name = "tavna.css";
    std::error_code ec;
    fs::path path = fs::current_path(ec) / name;
    if (ec || !fs::is_regular_file(path, ec)) {
        fs::path exe = fs::read_symlink("/proc/self/exe", ec);
        if (ec || exe.empty())
            exe = fs::absolute(argv0 != nullptr ? argv0 : "tavna", ec);
        path = exe.parent_path() / name;
    }
    if (!fs::is_regular_file(path, ec))
        return {};
    auto provider = Gtk::CssProvider::create();
    try {
        provider->load_from_path(path.string());
    } catch (const Glib::Error& e) {
        TavLog::Log::writeError("Style sheet " + path.string() + ": " + e.what());
        return {};
    }
    Gtk::StyleContext::add_provider_for_screen(Gdk::Screen::get_default(), provider,
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    return path.string();
}

} // namespace TavHost
