#pragma once

#include "platform/view/IPanelView.h"
#include "platform/view/IPresenter.h"
#include "platform/view/Positions.h"

#include <memory>
#include <string>
#include <vector>

namespace Tav {

class PanelManagerView;

// Lays out titled panels in resizable panes. A panel with a parent goes beside
// that parent (below it for Bottom, above for Top, left or right for those).
class PanelManagerPresenter : public IPresenter {
public:
    PanelManagerPresenter();
    ~PanelManagerPresenter() override;

    IView* getView() override;
    // `content` must be a widget to show; the panel does not own it. A parent
    // that is not one of this manager's panels is ignored.
    IPanelView* newPanel(const std::string& title, Positions position, IView& content,
                         IPanelView* parent);
    std::vector<IPanelView*> panels() const;

private:
    std::unique_ptr<PanelManagerView> view_;
};

} // namespace Tav
