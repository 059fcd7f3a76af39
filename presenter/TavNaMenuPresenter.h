#pragma once

#include "platform/view/IPresenter.h"

#include <memory>

namespace TavNA {

class TavNaModel;
class TavNaMenuView;

class TavNaMenuPresenter : public Tav::IPresenter {
public:
    explicit TavNaMenuPresenter(TavNaModel& model);
    ~TavNaMenuPresenter() override;

    Tav::IView* getView() override;

    // "Help/<language tag>/<document>.pdf", relative to the working folder.
    static std::string helpPath();

private:
    void _onMenuOpenFileClicked();
    void _onMenuAboutClicked();

    std::unique_ptr<TavNaMenuView> view;
    TavNaModel& model;
};

} // namespace TavNA
