#include "presenter/CapturePresenter.h"

#include "capture/CaptureError.h"
#include "capture/NetInterfaces.h"
#include "model/TavNaModel.h"
#include "platform/common/Log.h"
#include "platform/view/DialogPresenter.h"
#include "platform/view/FileDialogPresenter.h"
#include "view/CaptureBar.h"

#include <climits>
#include <glibmm/main.h>
#include <unistd.h>

namespace TavNA {

namespace {

// Often enough for counts that read as live, rare enough to cost nothing.
constexpr unsigned kRefreshMs = 250;
const auto kMessageBox = Tav::DialogResult::Warning;

std::string programPath() {
    char path[PATH_MAX];
    const ssize_t size = ::readlink("/proc/self/exe", path, sizeof path - 1);
    return size > 0 ? std::string(path, static_cast<std::size_t>(size)) : "tavna";
}

} // namespace

CapturePresenter::CapturePresenter(TavNaModel& model, CaptureBar& bar, Tav::IView* parent)
    : model(model), bar(bar), parent(parent) {
    bar.signalStart.connect([this] { start(); });
    bar.signalStop.connect([this] { stop(); });
    stoppedConnection = model.signalCaptureStopped.connect(
        [this](const std::string& reason) { _onStopped(reason); });
    onModeChanged();
}

CapturePresenter::~CapturePresenter() {
    ticking.disconnect();
    stoppedConnection.disconnect();
}

std::string CapturePresenter::noRightText() {
    return "Программе не разрешён захват кадров на этом компьютере.";
}

std::string CapturePresenter::noRightDetail() {
    return "Разрешите его установленной программе командой\n"
           "setcap cap_net_raw,cap_net_admin=eip " +
           programPath() + "\nили запустите программу от имени администратора.";
}

void CapturePresenter::onModeChanged() {
    ticking.disconnect();
    bar.setCapturing(false);
    bar.clearCounts();
    if (model.getMode() != Mode::Ethernet)
        return;
    std::vector<InterfaceChoice> choices;
    try {
        for (const TavCapture::NetInterface& i : TavCapture::listInterfaces())
            choices.push_back({i.name, i.description, i.up});
    } catch (const TavCapture::CaptureError& error) {
        TavLog::Log::writeError(error.what());
    }
    bar.setInterfaces(choices);
}

void CapturePresenter::start() {
    if (model.getMode() != Mode::Ethernet || model.isCapturing())
        return;
    const std::string name = bar.chosen();
    if (name.empty()) {
        _tell("Выберите сетевой интерфейс для захвата.", "");
        return;
    }
    try {
        model.startCapture(name);
    } catch (const TavCapture::CaptureError& error) {
        TavLog::Log::writeError(error.what());
        if (error.noPermission())
            _tell(noRightText(), noRightDetail());
        else
            _tell("Не удалось начать захват на интерфейсе " + name + ".", error.what());
        return;
    }
    bar.setCapturing(true);
    _refresh();
    ticking.disconnect();
    ticking = Glib::signal_timeout().connect(
        [this] {
            _refresh();
            return model.isCapturing();
        },
        kRefreshMs);
}

void CapturePresenter::stop() {
    model.stopCapture();
    _refresh();
}

void CapturePresenter::save() {
    if (model.getMode() != Mode::Ethernet)
        return;
    if (!model.hasCapture()) {
        _tell("Захвата ещё не было: сохранять нечего.", "");
        return;
    }
    const std::string path = Tav::FileDialogPresenter::show(
        parent, "Сохранить захват", {{"pcapng file (*.pcapng)", "*.pcapng"}}, true);
    if (path.empty())
        return;
    try {
        model.saveCapture(path);
    } catch (const TavCapture::CaptureError& error) {
        _tell("Не удалось сохранить захват в " + path + ".", error.what());
    }
}

void CapturePresenter::_refresh() {
    const TavCapture::CaptureCounts counts = model.captureCounts();
    bar.setCounts(counts.captured, counts.perSecond, counts.dropped);
    bar.setCapturing(model.isCapturing());
}

void CapturePresenter::_onStopped(const std::string& reason) {
    _refresh();
    _tell("Захват остановлен: интерфейс больше не отвечает.", reason);
}

void CapturePresenter::_tell(const std::string& message, const std::string& detail) {
    Tav::DialogPresenter::show(parent, message, detail, kMessageBox);
}

} // namespace TavNA
