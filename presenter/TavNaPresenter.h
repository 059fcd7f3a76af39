#pragma once

#include "model/TavNaModel.h"
#include "platform/view/IPresenter.h"
#include "platform/view/ModuleInterface.h"
#include "platform/view/UpdateViewGuard.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace Tav {
class PanelManagerPresenter;
class IPanelView;
} // namespace Tav

namespace TavNA {

class TavNaView;
class TavNaMenuPresenter;
class TavNaStatusbarPresenter;
class FileManagerPresenter;
class PackageListPresenter;
class RecordDescriptionPresenter;
class OscillographPresenter;
class DiagnosticsPresenter;
class MeasurementPresenter;
class LiveTicks;

// The module's root: the one object the host creates. Owns the main window,
// the capture model and every presenter, and rebuilds the panels whenever the
// model is reset by a mode change.
class TavNaPresenter : public Tav::ITavShell, public Tav::IPresenter, public Tav::IFileOpenable {
public:
    TavNaPresenter();
    ~TavNaPresenter() override;

    void open(Tav::IView* parent) override;
    std::shared_ptr<Tav::ShellDescriptor> descriptor() const override;
    Tav::IView* getView() override;
    // Opens the files one after another, each once the previous has ended.
    void openFiles(const std::vector<std::string>& paths) override;

    // One descriptor for the whole process, made on first use.
    static std::shared_ptr<Tav::ShellDescriptor> shellDescriptor();

    TavNaModel& getModel() { return model; }
    TavNaView& getMainView() { return *view; }
    TavNaStatusbarPresenter& getStatusbarPresenter() { return *statusbarPresenter; }
    TavNaMenuPresenter& getMenuPresenter() { return *menuPresenter; }
    Tav::PanelManagerPresenter& getPanelManager() { return *panelManager; }
    PackageListPresenter& getPackageListPresenter() { return *packageListPresenter; }
    RecordDescriptionPresenter& getRecordDescriptionPresenter() {
        return *recordDescriptionPresenter;
    }
    OscillographPresenter& getOscillographPresenter() { return *oscillographPresenter; }
    // Null in Ethernet mode.
    FileManagerPresenter* getFileManagerPresenter() { return fileManagerPresenter.get(); }
    DiagnosticsPresenter& getDiagnosticsPresenter() { return *diagnosticsPresenter; }
    MeasurementPresenter& getMeasurementPresenter() { return *measurementPresenter; }

private:
    void _init();
    void _onClose();
    void _onModeChanged();
    // Run on the parse worker; `self` is used only by the work they post.
    static void _onMessage(const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive,
                           TavNaPresenter* self, unsigned short code, const std::string& text);
    static void _onParseFinished(const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive,
                                 TavNaPresenter* self, const std::string& path);
    void _onOpenFinished(const std::string& path);
    void _onLoadSettled();
    void _setPanelsSensitive(bool sensitive);
    void _openNextFile();
    Tav::IPanelView* _newPanel(const std::string& title, int position, Tav::IView* content,
                               Tav::IPanelView* parent);

    std::unique_ptr<TavNaView> view;
    TavNaModel model;
    std::unique_ptr<TavNaMenuPresenter> menuPresenter;
    std::unique_ptr<TavNaStatusbarPresenter> statusbarPresenter;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> aliveToken;
    std::unique_ptr<Tav::PanelManagerPresenter> panelManager;
    std::unique_ptr<PackageListPresenter> packageListPresenter;
    std::unique_ptr<RecordDescriptionPresenter> recordDescriptionPresenter;
    std::unique_ptr<OscillographPresenter> oscillographPresenter;
    std::unique_ptr<DiagnosticsPresenter> diagnosticsPresenter;
    // Reads the oscillograph's window: made after it, let go before it.
    std::unique_ptr<MeasurementPresenter> measurementPresenter;
    std::unique_ptr<FileManagerPresenter> fileManagerPresenter;
    std::unique_ptr<LiveTicks> liveTicks;
    std::deque<std::string> pendingFiles;
    // A file handed over by openFiles is being parsed; the next waits for it.
    bool awaitingParse = false;
    sigc::connection closeConnection;
};

} // namespace TavNA
