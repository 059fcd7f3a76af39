#pragma once

#include "model/FileRecordModel.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <sigc++/signal.h>
#include <string>
#include <vector>

namespace TavNA {

// The capture files open at present, in the order they were added. Paths are
// compared byte for byte. A record stays valid until its removal signals have
// been emitted; listeners that hop threads must copy what they need first.
// Signals are emitted on the calling thread and outside the list's lock.
class FileManagerModel {
public:
    using Records = std::vector<std::unique_ptr<FileRecordModel>>;

    sigc::signal<void(FileRecordModel*)> signalAdded;
    sigc::signal<void(FileRecordModel*)> signalRemoved;
    sigc::signal<void(FileRecordModel*)> signalBeforeRemoved;
    sigc::signal<void()> signalCleared;

    FileManagerModel() = default;
    FileManagerModel(const FileManagerModel&) = delete;
    FileManagerModel& operator=(const FileManagerModel&) = delete;

    // No duplicate check: callers ask isExists first.
    void add(std::string name);
    bool isExists(std::string name) const;
    // The first record of that name; nothing when there is none.
    void remove(std::string name);
    void remove(FileRecordModel& record);
    // Drops every record with one signalCleared and no per-record signals.
    void clear();
    std::size_t size() const;
    // Whether `record` is still listed under `name`: a row's record may have
    // gone, and its address been reused, before the row hears of it.
    bool holds(const FileRecordModel* record, const std::string& name) const;

    // For the interface thread while no parse runs: the records themselves
    // are not guarded.
    const Records& getRecords() const { return records; }

private:
    template <typename Match> void _remove(Match match);

    Records records;
    // The worker adds while the interface thread asks whether a path is open.
    mutable std::mutex recordsMutex;
};

} // namespace TavNA
