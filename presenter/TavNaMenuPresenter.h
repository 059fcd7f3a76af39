#pragma once

#include "platform/view/IPresenter.h"

#include <memory>

namespace TavNA {

class TavNaModel;
class TavNaMenuView;
class OscillographPresenter;
class ComtradeExportPresenter;
class CapturePresenter;
class SclOpenPresenter;

class TavNaMenuPresenter : public Tav::IPresenter {
public:
    explicit TavNaMenuPresenter(TavNaModel& model);
    ~TavNaMenuPresenter() override;

    Tav::IView* getView() override;
    // The oscillograph whose ticked channels "Экспорт в COMTRADE…" exports.
    void setOscillograph(OscillographPresenter* presenter);
    ComtradeExportPresenter& getExportPresenter() { return *exporter; }
    // The capture the "Захват" items drive.
    void setCapture(CapturePresenter* presenter) { capture = presenter; }
    SclOpenPresenter& getSclOpener() { return *sclOpener; }

    // "Help/<language tag>/<document>.pdf", relative to the working folder.
    static std::string helpPath();

private:
    void _onMenuOpenFileClicked();
    void _onMenuAboutClicked();

    std::unique_ptr<TavNaMenuView> view;
    TavNaModel& model;
    std::unique_ptr<ComtradeExportPresenter> exporter;
    CapturePresenter* capture = nullptr;
    std::unique_ptr<SclOpenPresenter> sclOpener;
};

} // namespace TavNA
