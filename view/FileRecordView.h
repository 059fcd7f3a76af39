#pragma once

#include "view/IFileRecordView.h"
#include "view/ViewWidget.h"

#include <gtkmm/button.h>

namespace TavNA {

// Owns both buttons: when the row goes, they leave the panel with it.
class FileRecordView : public IFileRecordView {
public:
    FileRecordView();

    void setFileName(const std::string& path) override;
    Tav::IView* getNameView() override { return &nameButton; }
    Tav::IView* getRemoveButtonView() override { return &removeButton; }

    Gtk::Button& nameButtonWidget() { return nameButton; }
    Gtk::Button& removeButtonWidget() { return removeButton; }

private:
    void _onRemoveClicked();

    ViewWidget<Gtk::Button> nameButton;
    ViewWidget<Gtk::Button> removeButton;
};

} // namespace TavNA
