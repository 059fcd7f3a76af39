#pragma once

#include "model/TavNaModel.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace TavNaTest {

// Records what a capture model tells, from whichever thread it tells it, and
// lets the test thread wait until a worker thread has run to its very end.
// The worker's last act is the stream tree rebuild, but the signal it emits
// is still in use after the listener returns; only the thread's exit makes
// everything it did visible to the test thread.
class ModelWatch {
public:
    explicit ModelWatch(TavNA::TavNaModel& model);

    // Blocks until `count` workers in all have exited.
    void waitForWorkers(int count);
    // Blocks until the worker has reported progress of its own at least once.
    void waitForWorkerProgress();
    int workers() { return locked(workerExits); }
    int updates() { return locked(updateCount); }
    std::vector<std::string> events() { return locked(eventLog); }
    std::vector<std::string> messages() { return locked(messageLog); }

    // Runs on the worker at its first progress report (before the wake-up).
    void onFirstWorkerProgress(std::function<void()> action);

    // Opens a file and waits until the worker is done with it.
    void parse(const std::string& path);

private:
    template <typename T> T locked(const T& value) {
        std::lock_guard<std::mutex> lock(mutex);
        return value;
    }
    void _follow(TavNA::PackageListModel& list);
    void _onWorkerExit();
    friend struct WorkerExitNotice;
    void _note(const std::string& event);

    TavNA::TavNaModel& model;
    const std::thread::id testThread = std::this_thread::get_id();
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> eventLog;
    std::vector<std::string> messageLog;
    int updateCount = 0;
    int workerExits = 0;
    bool workerProgressed = false;
    std::function<void()> firstProgressAction;
};

} // namespace TavNaTest
