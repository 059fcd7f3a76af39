#include "presenter/ComtradeExportPresenter.h"

#include "comtrade/ChannelChoices.h"
#include "comtrade/ComtradeExporter.h"
#include "model/TavNaModel.h"
#include "platform/common/Log.h"
#include "platform/view/DialogPresenter.h"
#include "platform/view/FileDialogPresenter.h"
#include "presenter/OscillographPresenter.h"
#include "view/ExportProgressView.h"

#include <algorithm>

namespace TavNA {

using TavComtrade::ComtradeError;
using Kind = ComtradeError::Kind;

namespace {

template <typename Selection, typename Choices, typename Make>
void addChoices(const Selection& selection, Choices& choices, Make make) {
    std::vector<const void*> seen;
    for (const auto& [channel, group] : selection) {
        if (channel == nullptr || group == nullptr || group->getRecords().empty())
            continue;
        // A channel ticked twice stands twice in the selection, once in the record.
        if (std::find(seen.begin(), seen.end(), channel) != seen.end())
            continue;
        seen.push_back(channel);
        choices.push_back(make(*channel, *group->getRecords().back()));
    }
}

std::vector<std::string> pathsOf(const TavComtrade::ExportRequest& request) {
    std::vector<std::string> paths;
    auto add = [&](const auto& files) {
        for (const auto& f : files)
            paths.push_back(f.path);
    };
    for (const auto& a : request.analog)
        add(a.stream->files);
    for (const auto& d : request.digital)
        add(d.stream->files);
    std::sort(paths.begin(), paths.end());
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    return paths;
}

} // namespace

std::string exportFailureText(const ComtradeError& error) {
    switch (error.kind()) {
    case Kind::NoChannel:
        return "Не выбран ни один канал: отметьте каналы SV или GOOSE в списке потоков.";
    case Kind::NoSample:
        return "В видимом окне осциллограммы нет ни одного отсчёта выбранных потоков.";
    case Kind::RatesDiffer:
        return "Потоки SV с разной частотой дискретизации нельзя выровнять: " + error.detail();
    case Kind::NotBoolean:
        return "Эти каналы GOOSE не логические и не могут быть дискретными каналами: " +
               error.detail();
    case Kind::CannotWrite:
        return "Не удалось записать файл: " + error.detail();
    case Kind::Unreadable:
        return "Не удалось заново прочитать файл захвата: " + error.detail();
    case Kind::Cancelled:
        return "Экспорт отменён, файлы не записаны.";
    }
    return error.what();
}

ComtradeExportPresenter::ComtradeExportPresenter(TavNaModel& model, Tav::IView* parent)
    : model(model), parent(parent), progress(std::make_unique<ExportProgressView>()),
      alive(Tav::UpdateViewGuard::makeToken()) {
    const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken> token = alive;
    job = std::make_unique<TavJob::BackgroundJob>([token](TavJob::BackgroundJob::Task task) {
        Tav::UpdateViewGuard::safeBeginUpdateView(token, std::move(task));
    });
    // The export ends early and says so: its cancellation is its result.
    progress->signalCancel.connect([this] { job->cancel(); });
}

ComtradeExportPresenter::~ComtradeExportPresenter() {
    job->stop();
}

void ComtradeExportPresenter::start() {
    // As with opening: the wire's frames are in no file to read back.
    if (model.getMode() == Mode::Ethernet || oscillograph == nullptr || job->running())
        return;
    auto request = _request();
    if (!request)
        return;
    const std::string path = Tav::FileDialogPresenter::show(parent, "Экспорт в COMTRADE",
                                                            {{"COMTRADE (*.cfg)", "*.cfg"}}, true);
    if (path.empty())
        return;
    _run(TavComtrade::ComtradeExporter::basePath(path), std::move(*request));
}

std::optional<TavComtrade::ExportRequest> ComtradeExportPresenter::_request() {
    TavComtrade::ExportRequest request;
    addChoices(oscillograph->getSvSelection(), request.analog, TavComtrade::analogChoice);
    addChoices(oscillograph->getGooseSelection(), request.digital, TavComtrade::digitalChoice);
    if (request.analog.empty() && request.digital.empty()) {
        _tell(exportFailureText(ComtradeError(Kind::NoChannel, "")), "", true);
        return std::nullopt;
    }
    double from = 0.0, to = 0.0;
    oscillograph->getViewObj().getSeriesRange(from, to);
    const double start = model.getOscillographModel().start;
    request.from = OscillographPresenter::_getTimestFromSec(start + from);
    request.to = OscillographPresenter::_getTimestFromSec(start + to);
    request.stationName = TavComtrade::stationNameOf(pathsOf(request));
    request.deviceId = TavComtrade::deviceIdOf(request);
    request.clocks = model.getClocks();
    return request;
}

void ComtradeExportPresenter::_run(const std::string& base, TavComtrade::ExportRequest request) {
    shownPercent.store(-1);
    progress->showOver(parent);
    TavLog::Log::writeInfo("Экспорт в COMTRADE: " + base);
    job->start<Outcome>(
        [this, base, request = std::move(request)](const std::atomic<bool>& cancel,
                                                   const TavJob::BackgroundJob::Progress& shown) {
            Outcome outcome;
            const auto report = [this, &cancel, &shown](double share) {
                const int percent = static_cast<int>(share * 100);
                if (shownPercent.exchange(percent) != percent)
                    shown(share);
                return !cancel.load();
            };
            try {
                outcome.result = TavComtrade::ComtradeExporter::write(base, request, report);
            } catch (const ComtradeError& e) {
                outcome.error = e;
            } catch (const std::exception& e) {
                outcome.otherError = e.what();
            }
            return outcome;
        },
        std::function<void(Outcome)>([this](Outcome outcome) { _onFinished(outcome); }),
        [this](double share) { progress->updateProgress(share); });
}

void ComtradeExportPresenter::_onFinished(const Outcome& outcome) {
    progress->finish();
    if (outcome.result) {
        const auto& r = *outcome.result;
        _tell("Файлы COMTRADE записаны.",
              r.cfgPath + "\n" + r.datPath + "\n" + std::to_string(r.rows) + " строк", false);
    } else if (outcome.error) {
        _tell(exportFailureText(*outcome.error), "", true);
    } else {
        _tell("Экспорт в COMTRADE не удался.", outcome.otherError, true);
    }
}

void ComtradeExportPresenter::_tell(const std::string& message, const std::string& detail,
                                    bool failed) {
    if (failed)
        TavLog::Log::writeError("Экспорт в COMTRADE: " + message + " " + detail);
    Tav::DialogPresenter::show(parent, message, detail,
                               failed ? Tav::DialogResult::Error : Tav::DialogResult::Information);
}

} // namespace TavNA
