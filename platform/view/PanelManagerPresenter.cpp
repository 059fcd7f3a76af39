#include "platform/view/PanelManagerPresenter.h"

#include "platform/view/GtkWidgetHelper.h"
#include "platform/view/PanelManagerView.h"

namespace Tav {

PanelManagerPresenter::PanelManagerPresenter() : view_(std::make_unique<PanelManagerView>()) {}

PanelManagerPresenter::~PanelManagerPresenter() = default;

IView* PanelManagerPresenter::getView() {
    return view_.get();
}

IPanelView* PanelManagerPresenter::newPanel(const std::string& title, Positions position,
                                            IView& content, IPanelView* parent) {
    return view_->addPanel(title, position, GtkWidgetHelper::toWidget(&content),
                           dynamic_cast<PanelView*>(parent));
}

std::vector<IPanelView*> PanelManagerPresenter::panels() const {
    return {view_->panels().begin(), view_->panels().end()};
}

} // namespace Tav
