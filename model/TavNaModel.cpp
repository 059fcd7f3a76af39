#include "model/TavNaModel.h"

#include "model/FailureText.h"
#include "model/LiveSession.h"
#include "platform/common/Log.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/PcapParser.h"

#include <exception>
#include <iostream>
#include <limits>
#include <sigc++/functors/mem_fun.h>

namespace TavNA {

using TavIec61850Parser::Timest;
using TavLog::Log;

TavNaModel::TavNaModel()
    : fileManager(std::make_unique<FileManagerModel>()),
      packageList(std::make_unique<PackageListModel>()),
      oscillographModel(std::make_unique<OscillographModel>()) {
    filter.keep.sv = true;
    filter.keep.goose = true;
    // A capture's next batch waits for the load before it to settle.
    // Posted, so that every listener of the settling, which may still read
    // the tree, has run before the next batch's load begins.
    load.signalSettled.connect([this] {
        if (liveToken)
            load.postOwned(liveToken, [this] { _drainCapture(); });
    });
    Log::writeInfo("Запуск Сетевого Анализатора");
    mode = Mode::Pcap;
    _init();
}

TavNaModel::~TavNaModel() {
    shutdownWorker();
    clocks->stop();
    db = TavIec61850Parser::Db();
    _dropCapture();
    Log::writeInfo("Завершение работы Сетевого Анализатора");
}

void TavNaModel::shutdownWorker() {
    shutDown = true;
    _haltCapture();
    stopRequested.exchange(true);
    if (worker.joinable()) {
        Log::writeInfo("Ожидание завершения потока парсинга");
        worker.join();
        Log::writeInfo("Поток парсинга завершен");
    }
}

void TavNaModel::setPcapMode() {
    if (mode == Mode::Pcap)
        return;
    mode = Mode::Pcap;
    _init();
}

void TavNaModel::setEthernetMode() {
    if (mode == Mode::Ethernet)
        return;
    mode = Mode::Ethernet;
    _init();
}

bool TavNaModel::isParsing() const {
    return stopRequested.load() || worker.joinable() || parsedOnce;
}

void TavNaModel::stopParsing() {
    stopRequested.exchange(true);
}

void TavNaModel::parseFile(const std::string& path) {
    if (fileManager->isExists(path))
        return;
    // The old worker is awaited before progress restarts at 0, so that its
    // last reports cannot land after the new parse's first one and the two
    // threads never emit at the same time.
    if (stopRequested.load() || worker.joinable())
        _stopWorker();
    // The database is about to change under the old survey.
    clocks->stop();
    parsedOnce = true;
    load.begin();
    _updateProgress(0.0);
    stopRequested.exchange(false);
    signalParseStarted.emit(path);
    worker = std::thread([this, path] { _run(path); });
}

void TavNaModel::_init() {
    _haltCapture();
    signalResetting.emit();
    // A reset throws away what a running parse writes into; it must end first.
    if (worker.joinable()) {
        _stopWorker();
        stopRequested.exchange(false);
    }
    load.retire();
    clocks->stop();
    db = TavIec61850Parser::Db();
    clocks = std::make_shared<TavStream::StreamClocks>();
    _dropCapture();
    scl.clear();
    fileManager = std::make_unique<FileManagerModel>();
    if (fileRemovedConnection.connected())
        fileRemovedConnection.disconnect();
    fileRemovedConnection =
        fileManager->signalRemoved.connect(sigc::mem_fun(*this, &TavNaModel::_onFileRemoved));
    packageList = std::make_unique<PackageListModel>();
    signalModeChanged.emit();
}

void TavNaModel::_stopWorker() {
    stopRequested.exchange(true);
    if (worker.joinable())
        worker.join();
}

void TavNaModel::_run(const std::string& path) {
    Log::writeInfo("Старт потока парсинга. Файл: " + path);
    bool parsed = true;
    std::string failure;
    TavIec61850Parser::FileStats stats;
    try {
        TavIec61850Parser::PcapParser::parseFile(
            path, db, filter, stopRequested, [this](double value) { _updateProgress(value); },
            stats);
    } catch (const std::exception& error) {
        // What the parser kept of a broken file still counts: the file is
        // listed unless the time gap refuses it.
        std::cout << "Error: " << error.what() << std::endl;
        Log::writeError(error.what());
        const auto* parseError = dynamic_cast<const TavIec61850Parser::ParseError*>(&error);
        failure = parseError != nullptr ? parseError->reason() : error.what();
        parsed = false;
        _updateProgress(0.0);
    }
    if (parsed && !stopRequested.load())
        _updateProgress(1.0);

    if (stopRequested.load()) {
        db.clearByFileName(path);
        TavIec61850Parser::PcapParser::forgetFile(path);
        fileManager->remove(path);
    } else if (_checkFileTimeGap(path)) {
        fileManager->add(path);
        if (!parsed)
            _reportFailure(path, failure, stats.svFrames + stats.gooseFrames);
    } else {
        db.clearByFileName(path);
        TavIec61850Parser::PcapParser::forgetFile(path);
        signalMessage.emit(0, "У файла " + path + " разрыв с текущим временным диапазоном больше " +
                                  std::to_string(oscillographModel->gapSeconds) +
                                  " сек. Если необходимо откройте файл отдельно.");
    }
    _surveyClocks();
    signalParseFinished.emit(path);
    stopRequested.exchange(false);
    packageList->update(db, filter, groupFilter);
    load.settle();
}

// Every stream's clock needs all its frames: surveyed on a thread of the
// clocks' own once the database stands, so that the load ends at the parse's
// pace; whoever asks for a clock before the survey ends waits for it.
void TavNaModel::_surveyClocks() {
    auto fresh = std::make_shared<TavStream::StreamClocks>(TavStream::svStreams(db));
    fresh->startSurvey();
    clocks = std::move(fresh);
}

void TavNaModel::_reportFailure(const std::string& path, const std::string& reason,
                                std::uint64_t framesKept) {
    if (framesKept == 0) {
        signalMessage.emit(1, FailureText::unreadable(path, reason));
        return;
    }
    const auto [end, begin] = _getFileTimeRange(path);
    signalMessage.emit(2, FailureText::readInPart(path, reason, framesKept, begin, end));
}

void TavNaModel::_updateProgress(double value) {
    progress = value;
    signalProgress.emit(value);
}

void TavNaModel::_onFileRemoved(FileRecordModel* record) {
    clocks->stop();
    db.clearByFileName(record->fileName);
    TavIec61850Parser::PcapParser::forgetFile(record->fileName);
    _surveyClocks();
    packageList->update(db, filter, groupFilter);
    // Only GOOSE streams are asked about, also when SV streams remain: the
    // range is recomputed from the remaining files as soon as one is added.
    if (db.gooseProto.gooses.empty()) {
        oscillographModel->start = 0.0;
        oscillographModel->end = 0.0;
        oscillographModel->duration = 0.0;
    }
}

std::pair<Timest, Timest> TavNaModel::_getFileTimeRange(const std::string& path) const {
    Timest begin{std::numeric_limits<std::uint32_t>::max(), 0};
    Timest end{0, 0};
    auto widen = [&](const auto& records) {
        for (const auto& record : records)
            for (const auto& file : record.files) {
                if (file.path != path)
                    continue;
                begin = std::min(begin, file.getBeginTime());
                end = std::max(end, file.getEndTime());
            }
    };
    widen(db.svProto.svs);
    widen(db.gooseProto.gooses);
    return {end, begin};
}

bool TavNaModel::_checkFileTimeGap(const std::string& path) const {
    const auto [endStamp, beginStamp] = _getFileTimeRange(path);
    const double fileBegin = beginStamp.toSeconds();
    const double fileEnd = endStamp.toSeconds();
    const double curBegin = oscillographModel->start;
    const double curEnd = oscillographModel->end;
    const double gap = oscillographModel->gapSeconds;
    // A file with no stream at all spans [4294967295 s, 0 s]: the first test
    // refuses it beside any open range, the second never fires for it.
    if (fileBegin > curEnd && fileBegin - curEnd > gap && curEnd != 0.0)
        return false;
    if (curBegin > fileEnd && curBegin - fileEnd > gap)
        return false;
    return true;
}

} // namespace TavNA
