#pragma once

#include "platform/view/IPresenter.h"

#include <memory>

namespace TavNA {

// A section of the record description: it owns its view from the start and
// fills it on each pick.
template <typename ViewT> class DescPresenter : public Tav::IPresenter {
public:
    DescPresenter() : view(std::make_unique<ViewT>()) {}
    DescPresenter(const DescPresenter&) = delete;
    DescPresenter& operator=(const DescPresenter&) = delete;

    Tav::IView* getView() override { return view.get(); }
    ViewT& getViewObj() { return *view; }

protected:
    std::unique_ptr<ViewT> view;
};

} // namespace TavNA
