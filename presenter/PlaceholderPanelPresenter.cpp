#include "presenter/PlaceholderPanelPresenter.h"

#include "view/PlaceholderPanelView.h"

namespace TavNA {

PlaceholderPanelPresenter::PlaceholderPanelPresenter(const std::string& title)
    : view(std::make_unique<PlaceholderPanelView>(title)) {}

PlaceholderPanelPresenter::~PlaceholderPanelPresenter() = default;

Tav::IView* PlaceholderPanelPresenter::getView() {
    return view.get();
}

} // namespace TavNA
