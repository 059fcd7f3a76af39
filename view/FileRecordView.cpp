#include "view/FileRecordView.h"

#include "view/CancelButton.h"

#include <glibmm/miscutils.h>

namespace TavNA {

FileRecordView::FileRecordView() {
    nameButton.set_relief(Gtk::RELIEF_NONE);
    nameButton.set_hexpand(false);
    nameButton.get_style_context()->add_class("fileRecord");

    makeCancelButton(removeButton);
    removeButton.signal_clicked().connect(sigc::mem_fun(*this, &FileRecordView::_onRemoveClicked));
}

void FileRecordView::setFileName(const std::string& path) {
    nameButton.set_label(Glib::path_get_basename(path));
}

void FileRecordView::_onRemoveClicked() {
    signalRemoveClicked.emit();
}

} // namespace TavNA
