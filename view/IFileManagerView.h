#pragma once

#include "platform/view/IView.h"

namespace TavNA {

// The panel of open capture files: one row per file.
class IFileManagerView : public Tav::IView {
public:
    // Places a row below every row placed before; views that are no widgets
    // place nothing.
    virtual void setRowView(Tav::IView* name, Tav::IView* removeButton) = 0;
};

} // namespace TavNA
