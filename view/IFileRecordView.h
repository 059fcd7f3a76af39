#pragma once

#include "platform/view/IView.h"

#include <sigc++/signal.h>
#include <string>

namespace TavNA {

// One open file's row: its name and a remove button, placed separately by
// the panel that lists the files.
class IFileRecordView : public Tav::IView {
public:
    sigc::signal<void()> signalRemoveClicked;

    virtual void setFileName(const std::string& path) = 0;
    virtual Tav::IView* getNameView() = 0;
    virtual Tav::IView* getRemoveButtonView() = 0;
};

} // namespace TavNA
