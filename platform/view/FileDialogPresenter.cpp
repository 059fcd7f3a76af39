#include "platform/view/FileDialogPresenter.h"

#include "platform/view/GtkWidgetHelper.h"

#include <gtkmm/filechooserdialog.h>
#include <sstream>

namespace Tav {

std::string
FileDialogPresenter::show(IView* parent, const std::string& title,
                          const std::vector<std::pair<std::string, std::string>>& filters,
                          bool save) {
    Gtk::FileChooserDialog dialog(title, save ? Gtk::FILE_CHOOSER_ACTION_SAVE
                                              : Gtk::FILE_CHOOSER_ACTION_OPEN);
    dialog.add_button("Отмена", Gtk::RESPONSE_CANCEL);
    dialog.add_button(save ? "Сохранить" : "Открыть", Gtk::RESPONSE_ACCEPT);
    dialog.set_default_response(Gtk::RESPONSE_ACCEPT);
    dialog.set_modal(true);
    if (save)
        dialog.set_do_overwrite_confirmation(true);
    for (const auto& [name, pattern] : filters) {
        auto filter = Gtk::FileFilter::create();
        filter->set_name(name);
        std::istringstream patterns(pattern);
        for (std::string glob; patterns >> glob;)
            filter->add_pattern(glob);
        dialog.add_filter(filter);
    }
    if (Gtk::Window* window = GtkWidgetHelper::getParentWindow(parent))
        dialog.set_transient_for(*window);
    if (dialog.run() != Gtk::RESPONSE_ACCEPT)
        return {};
    return dialog.get_filename();
}

} // namespace Tav
