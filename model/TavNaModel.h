#pragma once

#include "capture/LiveCapture.h"
#include "model/CurrentLoad.h"
#include "model/FileManagerModel.h"
#include "model/GroupFilter.h"
#include "model/OscillographModel.h"
#include "model/PackageListModel.h"
#include "model/SclConfiguration.h"
#include "platform/parser/Filter.h"
#include "platform/parser/StreamRecords.h"
#include "platform/parser/Timest.h"
#include "stream/StreamClocks.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <sigc++/connection.h>
#include <sigc++/signal.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace TavNA {

class LiveSession;

// How the capture model gets its frames: from opened files or from the wire.
enum class Mode : std::int32_t { None = 0, Pcap = 1, Ethernet = 2 };

// The capture model: the database of every open file, the list of those
// files, the stream tree and the time range, and the one parse worker.
//
// The worker writes the database, the file list and the stream tree and emits
// from its own thread; listeners that touch widgets hop to the interface
// thread themselves. The interface thread must leave the database alone while
// a worker runs: every operation that replaces or reads it first stops and
// joins the worker.
class TavNaModel {
public:
    TavNaModel();
    TavNaModel(const TavNaModel&) = delete;
    TavNaModel& operator=(const TavNaModel&) = delete;
    ~TavNaModel();

    // Switching to the active mode does nothing; the other one resets the model.
    void setPcapMode();
    void setEthernetMode();
    Mode getMode() const { return mode; }

    TavIec61850Parser::Db& getDb() { return db; }
    // The sampling clocks of the database as it stands; replaced with it.
    // Interface thread, outside a load (like the database itself).
    std::shared_ptr<TavStream::StreamClocks> getClocks() const { return clocks; }
    TavIec61850Parser::Filter& getFilter() { return filter; }
    GroupFilter& getGroupFilter() { return groupFilter; }
    // Replaced on every reset: fetch them again on signalModeChanged.
    FileManagerModel& getFileManagerModel() { return *fileManager; }
    PackageListModel& getPackageListModel() { return *packageList; }
    OscillographModel& getOscillographModel() { return *oscillographModel; }

    // The substation configuration the streams are named and checked by;
    // emptied when the mode switches.
    SclConfiguration& getScl() { return scl; }

    // Which parse the interface's work belongs to; see CurrentLoad.
    CurrentLoad& getLoad() { return load; }

    // True once any file has been parsed, for the rest of the model's life,
    // also when a reset has joined the worker.
    bool isParsing() const;
    void stopParsing();
    // A path already open is ignored; a parse that still runs is cancelled
    // and awaited first.
    void parseFile(const std::string& path);
    // Stops and awaits a worker, logging the wait, as the destructor does. An
    // owner calls it before its listeners go, so that the worker never emits
    // into an object that is being destroyed.
    void shutdownWorker();

    // ETHERNET mode: captures SV and GOOSE frames on the interface and reads
    // them into the database as they arrive, a load per batch of segments.
    // What an earlier capture kept is dropped first (a reset). Throws
    // TavCapture::CaptureError when the interface cannot be captured on.
    void startCapture(const std::string& interfaceName);
    // What the capture kept stays for analysis, like a loaded file.
    void stopCapture();
    bool isCapturing() const;
    // True once a capture has started, until the next reset.
    bool hasCapture() const { return live != nullptr; }
    TavCapture::CaptureCounts captureCounts() const;
    // Every frame the capture kept, as one pcapng file; throws
    // TavCapture::CaptureError.
    void saveCapture(const std::string& path) const;
    // The size the kept segments may reach, for captures started from now on.
    void setCaptureLimit(std::uint64_t bytes) { captureLimit = bytes; }

private:
    CurrentLoad load;
    std::unique_ptr<FileManagerModel> fileManager;
    std::unique_ptr<PackageListModel> packageList;
    std::unique_ptr<OscillographModel> oscillographModel;

public:
    sigc::signal<void(double)> signalProgress;
    sigc::signal<void(const std::string&)> signalParseStarted;
    sigc::signal<void(const std::string&)> signalParseFinished;
    sigc::signal<void()> signalModeChanged;
    // Raised on the interface thread before a reset frees the database, for
    // readers that must let go of it first.
    sigc::signal<void()> signalResetting;
    sigc::signal<void(unsigned short, const std::string&)> signalMessage;
    // Interface thread: the capture ended by itself (its interface went down
    // or disappeared); the reason.
    sigc::signal<void(const std::string&)> signalCaptureStopped;
    // Worker, inside a load: a capture's new frames are in the database.
    sigc::signal<void()> signalCaptureGrown;

private:
    void _init();
    void _run(const std::string& path);
    // Tells the user what of a failed file was kept.
    void _reportFailure(const std::string& path, const std::string& reason,
                        std::uint64_t framesKept);
    void _stopWorker();
    void _surveyClocks();
    void _updateProgress(double value);
    void _onFileRemoved(FileRecordModel* record);
    // (latest end, earliest begin) over every stream's part of that file.
    std::pair<TavIec61850Parser::Timest, TavIec61850Parser::Timest>
    _getFileTimeRange(const std::string& path) const;
    bool _checkFileTimeGap(const std::string& path) const;
    // Interface thread: a load reads what the capture handed over, unless
    // one runs; its settling looks again.
    void _drainCapture();
    void _readSegments(const std::vector<std::string>& closed,
                       const std::vector<std::string>& retired);
    void _onCaptureFailed(const std::string& reason);
    // The capture thread ends and its posts are dropped; its files stay.
    void _haltCapture();
    // After the database let go of them: the segments and their folder go.
    void _dropCapture();

    TavIec61850Parser::Db db;
    std::shared_ptr<TavStream::StreamClocks> clocks = std::make_shared<TavStream::StreamClocks>();
    TavIec61850Parser::Filter filter;
    GroupFilter groupFilter;
    SclConfiguration scl;
    std::atomic<bool> stopRequested{false};
    std::thread worker;
    double progress = 0.0;
    bool parsedOnce = false;
    Mode mode = Mode::None;
    sigc::connection fileRemovedConnection;
    std::unique_ptr<LiveSession> live;
    // What the capture posts runs only while this is the session's.
    std::shared_ptr<void> liveToken;
    std::uint64_t captureLimit = 2ull << 30;
    bool shutDown = false;
};

} // namespace TavNA
