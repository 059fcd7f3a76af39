#pragma once

#include "platform/view/IView.h"
#include "view/DescSection.h"

#include <string>

namespace TavNA {

// The picked stream against the substation configuration: its control block,
// or that none is configured, and each field the stream contradicts.
class SclDescView : public Tav::IView, public DescSection {
public:
    enum Row { ControlBlock, Mismatches };

    SclDescView();
    void setControlBlock(const std::string& text);
    // One line per contradicted field; the row is hidden when there is none.
    void setMismatches(const std::string& lines);
};

} // namespace TavNA
