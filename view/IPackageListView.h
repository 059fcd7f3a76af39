#pragma once

#include "platform/view/IView.h"

#include <string>
#include <vector>

namespace TavNA {

// The panel of SV and GOOSE streams: one section per protocol that has any,
// and one of the configured streams that are absent.
class IPackageListView : public Tav::IView {
public:
    ~IPackageListView() override = default;
    virtual void setSVproto(const std::string& text) = 0;
    virtual void setGooseProto(const std::string& text) = 0;
    virtual void clear() = 0;
    virtual void addSvStream(Tav::IView* view) = 0;
    virtual void addGooseStream(Tav::IView* view) = 0;
    virtual void unselectItems() = 0;
    // Configured streams the capture does not hold, one line each; none
    // hides the section.
    virtual void setAbsent(const std::vector<std::string>& lines) = 0;
};

} // namespace TavNA
