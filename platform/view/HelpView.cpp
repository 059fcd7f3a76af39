#include "platform/view/HelpView.h"

#include "platform/common/DataFiles.h"
#include "platform/common/Log.h"
#include "platform/view/DialogPresenter.h"
#include "platform/view/GtkWidgetHelper.h"

#include <filesystem>
#include <giomm/file.h>
#include <glibmm/error.h>
#include <gtk/gtk.h>
#include <gtkmm/window.h>

namespace Tav {

void HelpView::show(IView* parent, const std::string& path) {
    std::error_code ec;
    const std::filesystem::path absolute = std::filesystem::absolute(dataFile(path), ec);
    if (ec || !std::filesystem::is_regular_file(absolute, ec)) {
        TavLog::Log::writeError("Не найден файл справки: " + path);
        DialogPresenter::show(parent, "Не найден файл справки", path, DialogResult::Error);
        return;
    }
    const std::string uri = Gio::File::create_for_path(absolute.string())->get_uri();
    Gtk::Window* window = GtkWidgetHelper::getParentWindow(parent);
    GError* error = nullptr;
    if (!gtk_show_uri_on_window(window != nullptr ? window->gobj() : nullptr, uri.c_str(),
                                GDK_CURRENT_TIME, &error)) {
        const std::string reason = error != nullptr ? error->message : "";
        g_clear_error(&error);
        TavLog::Log::writeError("Не удалось открыть файл справки: " + path + " " + reason);
        DialogPresenter::show(parent, "Не удалось открыть файл справки", path + "\n" + reason,
                              DialogResult::Error);
    }
}

} // namespace Tav
