#include "presenter/TavNaPresenter.h"

#include "platform/common/Log.h"
#include "platform/view/DialogPresenter.h"
#include "platform/view/PanelManagerPresenter.h"
#include "presenter/DiagnosticsPresenter.h"
#include "presenter/FileManagerPresenter.h"
#include "presenter/LiveTicks.h"
#include "presenter/MeasurementPresenter.h"
#include "presenter/OscillographPresenter.h"
#include "presenter/PackageListPresenter.h"
#include "presenter/RecordDescriptionPresenter.h"
#include "presenter/TavNaMenuPresenter.h"
#include "presenter/TavNaStatusbarPresenter.h"
#include "view/OscillographView.h"
#include "view/TavNaView.h"

#include <gtkmm/widget.h>
#include <mutex>

namespace TavNA {

namespace {

const char* const packageListTitle = "Список SV и GOOSE";
const char* const descriptionTitle = "Описание";
const char* const oscillographTitle = "Осциллограмма";
const char* const filesTitle = "Файлы";
const char* const diagnosticsTitle = "Диагностика";
const char* const measurementTitle = "Измерения";

} // namespace

TavNaPresenter::TavNaPresenter()
    : view(std::make_unique<TavNaView>()),
      menuPresenter(std::make_unique<TavNaMenuPresenter>(model)),
      statusbarPresenter(std::make_unique<TavNaStatusbarPresenter>(model)),
      aliveToken(Tav::UpdateViewGuard::makeToken()) {
    model.getLoad().setPoster([](CurrentLoad::Task task) { Tav::beginUpdateView(task); });
    menuPresenter->setCapture(&statusbarPresenter->getCapturePresenter());
    liveTicks = std::make_unique<LiveTicks>(model, [this] { return packageListPresenter.get(); });
    // While a load runs, a pick or a removal would read or change what its
    // worker writes, and the lists point into a tree it is about to free.
    model.getLoad().signalBegun.connect([this] { _setPanelsSensitive(false); });
    model.getLoad().signalSettled.connect(sigc::mem_fun(*this, &TavNaPresenter::_onLoadSettled));
    _init();
    model.signalModeChanged.connect(sigc::mem_fun(*this, &TavNaPresenter::_onModeChanged));
    // Both come from the parse worker, which may still run while the members
    // go: the slots keep their own weak copy of the token and leave this
    // presenter to the work they post.
    const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken> alive = aliveToken;
    model.signalMessage.connect([alive, this](unsigned short code, const std::string& text) {
        _onMessage(alive, this, code, text);
    });
    model.signalParseFinished.connect(
        [alive, this](const std::string& path) { _onParseFinished(alive, this, path); });
}

// The panel presenters listen to signals the worker emits and go before the
// model does: the worker must have ended first.
TavNaPresenter::~TavNaPresenter() {
    closeConnection.disconnect();
    model.shutdownWorker();
}

std::shared_ptr<Tav::ShellDescriptor> TavNaPresenter::shellDescriptor() {
    // Never freed before exit: the host may still hold copies while the
    // module's last instance goes.
    static std::once_flag once;
    static std::shared_ptr<Tav::ShellDescriptor>* shared = nullptr;
    std::call_once(once, [] {
        shared = new std::shared_ptr<Tav::ShellDescriptor>(std::make_shared<Tav::ShellDescriptor>(
            "Icons/Shell/NetworkAnalyzer_network_analyzer.png", "Сетевой Анализатор", true));
    });
    return *shared;
}

std::shared_ptr<Tav::ShellDescriptor> TavNaPresenter::descriptor() const {
    return shellDescriptor();
}

Tav::IView* TavNaPresenter::getView() {
    return view.get();
}

void TavNaPresenter::open(Tav::IView* parent) {
    const std::shared_ptr<Tav::ShellDescriptor> shell = descriptor();
    view->show(parent, shell->title());
    closeConnection.disconnect();
    closeConnection =
        view->signalCloseRequest.connect(sigc::mem_fun(*this, &TavNaPresenter::_onClose));
    signalOpened.emit();
}

void TavNaPresenter::openFiles(const std::vector<std::string>& paths) {
    pendingFiles.insert(pendingFiles.end(), paths.begin(), paths.end());
    if (!awaitingParse)
        _openNextFile();
}

void TavNaPresenter::_init() {
    panelManager = std::make_unique<Tav::PanelManagerPresenter>();
    view->addHeader(menuPresenter->getView());
    view->addWidget(panelManager->getView());
    view->addFooter(statusbarPresenter->getView());

    packageListPresenter = std::make_unique<PackageListPresenter>(model.getPackageListModel(),
                                                                  model.getLoad(), &model.getScl());
    recordDescriptionPresenter = std::make_unique<RecordDescriptionPresenter>(
        model.getPackageListModel(), model.getLoad(), &model.getScl());
    measurementPresenter.reset();
    oscillographPresenter = std::make_unique<OscillographPresenter>(model);
    // Made before this presenter listens to rebuilds: it takes its look at the
    // database before the next queued file may start changing it.
    diagnosticsPresenter =
        std::make_unique<DiagnosticsPresenter>(model, [this](double from, double to) {
            oscillographPresenter->getViewObj().setSeriesRange(from, to);
        });
    measurementPresenter = std::make_unique<MeasurementPresenter>(model, *oscillographPresenter);
    menuPresenter->setOscillograph(oscillographPresenter.get());

    Tav::IPanelView* packageList =
        _newPanel(packageListTitle, 0, packageListPresenter->getView(), nullptr);
    if (packageList != nullptr)
        packageList->setPreferredSize(300, 200);
    Tav::IPanelView* description =
        _newPanel(descriptionTitle, 1, recordDescriptionPresenter->getView(), nullptr);
    // Wide enough for its longest lines before anything is picked; the
    // diagnostics go below it, so the plot keeps most of the width.
    if (description != nullptr)
        description->setPreferredSize(300, 420);
    _newPanel(diagnosticsTitle, 3, diagnosticsPresenter->getView(), description);
    _newPanel(oscillographTitle, 3, oscillographPresenter->getView(), nullptr);
    Tav::IPanelView* measurements =
        _newPanel(measurementTitle, 1, measurementPresenter->getView(), nullptr);
    if (measurements != nullptr)
        measurements->setPreferredSize(420, 600);

    fileManagerPresenter.reset();
    if (model.getMode() == Mode::Pcap) {
        fileManagerPresenter = std::make_unique<FileManagerPresenter>(model.getFileManagerModel());
        Tav::IPanelView* files =
            _newPanel(filesTitle, 3, fileManagerPresenter->getView(), packageList);
        if (files != nullptr)
            files->setPreferredSize(300, 100);
    }
}

Tav::IPanelView* TavNaPresenter::_newPanel(const std::string& title, int position,
                                           Tav::IView* content, Tav::IPanelView* parent) {
    if (content == nullptr)
        return nullptr;
    Tav::IPanelView* panel =
        panelManager->newPanel(title, static_cast<Tav::Positions>(position), *content, parent);
    if (panel != nullptr)
        panel->setMinimumSize(0, 0);
    return panel;
}

void TavNaPresenter::_onClose() {
    signalClosed.emit();
}

void TavNaPresenter::_onModeChanged() {
    // Files queued for opening belong to the model that has just been reset.
    pendingFiles.clear();
    awaitingParse = false;
    _init();
}

// The code is carried but every message is shown the same way.
void TavNaPresenter::_onMessage(const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive,
                                TavNaPresenter* self, unsigned short, const std::string& text) {
    const std::string message = text;
    self->model.getLoad().post(alive, [self, message] {
        Tav::DialogPresenter::show(self->view.get(), message, "",
                                   static_cast<Tav::DialogResult>(16));
    });
}

void TavNaPresenter::_onParseFinished(
    const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive, TavNaPresenter* self,
    const std::string& path) {
    const std::string finished = path;
    self->model.getLoad().post(alive, [self, finished] { self->_onOpenFinished(finished); });
}

void TavNaPresenter::_onOpenFinished(const std::string& path) {
    if (model.getMode() == Mode::Pcap && model.getFileManagerModel().isExists(path))
        TavLog::Log::writeInfo("Файл открыт: " + path);
}

// Runs after the stream list's own rebuild for the same load, which was posted
// first: only now may the next file's worker replace the tree again.
void TavNaPresenter::_onLoadSettled() {
    _setPanelsSensitive(true);
    if (!awaitingParse)
        return;
    awaitingParse = false;
    _openNextFile();
}

void TavNaPresenter::_setPanelsSensitive(bool sensitive) {
    for (Tav::IView* panel : {packageListPresenter ? packageListPresenter->getView() : nullptr,
                              fileManagerPresenter ? fileManagerPresenter->getView() : nullptr})
        if (auto* widget = dynamic_cast<Gtk::Widget*>(panel))
            widget->set_sensitive(sensitive);
}

// A path that is already open starts no parse and so would never finish:
// it is passed over here instead of waited for.
void TavNaPresenter::_openNextFile() {
    if (model.getMode() != Mode::Pcap) {
        pendingFiles.clear();
        return;
    }
    while (!pendingFiles.empty()) {
        const std::string path = pendingFiles.front();
        pendingFiles.pop_front();
        if (model.getFileManagerModel().isExists(path))
            continue;
        awaitingParse = true;
        model.parseFile(path);
        return;
    }
}

} // namespace TavNA
