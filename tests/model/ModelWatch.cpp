#include "tests/model/ModelWatch.h"

namespace TavNaTest {

// Tells the watch when the worker thread that armed it exits.
struct WorkerExitNotice {
    ModelWatch* watch = nullptr;
    ~WorkerExitNotice() {
        if (watch != nullptr)
            watch->_onWorkerExit();
    }
};

ModelWatch::ModelWatch(TavNA::TavNaModel& model) : model(model) {
    model.signalParseStarted.connect([this](const std::string& p) { _note("started " + p); });
    model.signalParseFinished.connect([this](const std::string& p) { _note("finished " + p); });
    model.signalModeChanged.connect([this] {
        _note("mode");
        _follow(this->model.getPackageListModel());
    });
    model.signalMessage.connect([this](unsigned short code, const std::string& text) {
        _note("message " + std::to_string(code));
        std::lock_guard<std::mutex> lock(mutex);
        messageLog.push_back(text);
    });
    model.signalProgress.connect([this](double) {
        if (std::this_thread::get_id() == testThread)
            return;
        std::function<void()> action;
        {
            std::lock_guard<std::mutex> lock(mutex);
            if (workerProgressed)
                return;
            action = std::move(firstProgressAction);
        }
        if (action)
            action();
        std::lock_guard<std::mutex> lock(mutex);
        workerProgressed = true;
        changed.notify_all();
    });
    _follow(model.getPackageListModel());
}

void ModelWatch::_follow(TavNA::PackageListModel& list) {
    list.signalUpdated.connect([this] {
        std::lock_guard<std::mutex> lock(mutex);
        ++updateCount;
        if (std::this_thread::get_id() != testThread) {
            thread_local WorkerExitNotice notice;
            notice.watch = this;
        }
    });
}

void ModelWatch::_onWorkerExit() {
    std::lock_guard<std::mutex> lock(mutex);
    ++workerExits;
    changed.notify_all();
}

void ModelWatch::_note(const std::string& event) {
    std::lock_guard<std::mutex> lock(mutex);
    eventLog.push_back(event);
}

void ModelWatch::waitForWorkers(int count) {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [&] { return workerExits >= count; });
}

void ModelWatch::waitForWorkerProgress() {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [&] { return workerProgressed; });
}

void ModelWatch::onFirstWorkerProgress(std::function<void()> action) {
    std::lock_guard<std::mutex> lock(mutex);
    workerProgressed = false;
    firstProgressAction = std::move(action);
}

void ModelWatch::parse(const std::string& path) {
    const int before = workers();
    model.parseFile(path);
    waitForWorkers(before + 1);
}

} // namespace TavNaTest
