// The capture model's live capture: segments handed over by the capture
// thread are read into the database by the parse worker, one load per batch,
// so that the database changes only under the rules of a load.
#include "capture/CaptureError.h"
#include "model/LiveSession.h"
#include "model/TavNaModel.h"
#include "platform/common/Log.h"
#include "platform/parser/PcapParser.h"

#include <exception>
#include <filesystem>

namespace TavNA {

using TavLog::Log;

void TavNaModel::startCapture(const std::string& interfaceName) {
    if (mode != Mode::Ethernet)
        return;
    if (live)
        _init();
    auto token = std::make_shared<char>();
    const std::weak_ptr<void> owner = token;
    TavCapture::CaptureOptions options;
    options.interface = interfaceName;
    options.ringBytes = captureLimit;
    live = std::make_unique<LiveSession>(
        std::move(options), [this, owner] { load.postOwned(owner, [this] { _drainCapture(); }); },
        [this, owner](const std::string& reason) {
            load.postOwned(owner, [this, reason] { _onCaptureFailed(reason); });
        });
    liveToken = std::move(token);
    Log::writeInfo("Захват начат: " + interfaceName);
}

void TavNaModel::stopCapture() {
    if (!live || !live->running())
        return;
    // The segment being written is handed over as the thread ends.
    live->stop();
    Log::writeInfo("Захват остановлен: " + live->interfaceName());
}

bool TavNaModel::isCapturing() const {
    return live && live->running();
}

TavCapture::CaptureCounts TavNaModel::captureCounts() const {
    return live ? live->counts() : TavCapture::CaptureCounts{};
}

void TavNaModel::saveCapture(const std::string& path) const {
    if (!live)
        throw TavCapture::CaptureError("nothing was captured", false);
    live->save(path);
}

void TavNaModel::_drainCapture() {
    if (shutDown || !live || load.isRunning())
        return;
    LiveSession::Pending pending = live->take();
    if (pending.empty())
        return;
    if (worker.joinable())
        worker.join();
    // The database is about to change under the old survey.
    clocks->stop();
    load.begin();
    stopRequested.exchange(false);
    worker = std::thread(
        [this, pending = std::move(pending)] { _readSegments(pending.closed, pending.retired); });
}

void TavNaModel::_readSegments(const std::vector<std::string>& closed,
                               const std::vector<std::string>& retired) {
    for (const std::string& path : retired) {
        db.clearByFileName(path);
        TavIec61850Parser::PcapParser::forgetFile(path);
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    for (const std::string& path : closed) {
        try {
            TavIec61850Parser::FileStats stats;
            TavIec61850Parser::PcapParser::parseFile(path, db, filter, stopRequested, nullptr,
                                                     stats, 1);
        } catch (const std::exception& error) {
            Log::writeError(error.what());
        }
    }
    _surveyClocks();
    packageList->update(db, filter, groupFilter);
    signalCaptureGrown.emit();
    load.settle();
}

void TavNaModel::_onCaptureFailed(const std::string& reason) {
    if (!live)
        return;
    live->stop();
    Log::writeError("Захват прерван: " + live->interfaceName() + ": " + reason);
    signalCaptureStopped.emit(reason);
}

void TavNaModel::_haltCapture() {
    liveToken.reset();
    if (live)
        live->stop();
}

void TavNaModel::_dropCapture() {
    if (!live)
        return;
    for (const std::string& path : live->segments())
        TavIec61850Parser::PcapParser::forgetFile(path);
    live.reset();
}

} // namespace TavNA
