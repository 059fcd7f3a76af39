#include "host/StyleSheet.h"

#include "platform/common/DataFiles.h"
#include "platform/common/Log.h"

#include <filesystem>
#include <gdkmm/screen.h>
#include <glibmm/error.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/stylecontext.h>

namespace TavHost {

std::string loadStyleSheet() {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path path = Tav::dataFile("tavna.css");
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
