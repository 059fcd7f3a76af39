#pragma once

#include "platform/view/IPresenter.h"

#include <memory>
#include <string>

namespace TavNA {

class PlaceholderPanelView;

// Holds the place of a panel whose presenter is not written yet.
class PlaceholderPanelPresenter : public Tav::IPresenter {
public:
    explicit PlaceholderPanelPresenter(const std::string& title);
    ~PlaceholderPanelPresenter() override;

    Tav::IView* getView() override;

private:
    std::unique_ptr<PlaceholderPanelView> view;
};

} // namespace TavNA
