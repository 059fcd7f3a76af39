#include "model/FileManagerModel.h"

#include <algorithm>
#include <exception>
#include <iostream>

namespace TavNA {

void FileManagerModel::add(std::string name) {
    FileRecordModel* record = nullptr;
    {
        std::lock_guard<std::mutex> lock(recordsMutex);
        records.push_back(std::make_unique<FileRecordModel>());
        record = records.back().get();
        record->fileName = std::move(name);
    }
    signalAdded.emit(record);
}

bool FileManagerModel::isExists(std::string name) const {
    std::lock_guard<std::mutex> lock(recordsMutex);
    return std::any_of(records.begin(), records.end(),
                       [&](const auto& record) { return record->fileName == name; });
}

void FileManagerModel::remove(std::string name) {
    _remove([&](const FileRecordModel& record) { return record.fileName == name; });
}

void FileManagerModel::remove(FileRecordModel& record) {
    _remove([&](const FileRecordModel& own) { return &own == &record; });
}

void FileManagerModel::clear() {
    {
        std::lock_guard<std::mutex> lock(recordsMutex);
        records.clear();
    }
    signalCleared.emit();
}

std::size_t FileManagerModel::size() const {
    std::lock_guard<std::mutex> lock(recordsMutex);
    return records.size();
}

bool FileManagerModel::holds(const FileRecordModel* record, const std::string& name) const {
    std::lock_guard<std::mutex> lock(recordsMutex);
    return std::any_of(records.begin(), records.end(), [&](const auto& own) {
        return own.get() == record && own->fileName == name;
    });
}

template <typename Match> void FileManagerModel::_remove(Match match) {
    FileRecordModel* record = nullptr;
    {
        std::lock_guard<std::mutex> lock(recordsMutex);
        const auto it = std::find_if(records.begin(), records.end(),
                                     [&](const auto& own) { return match(*own); });
        if (it == records.end())
            return;
        record = it->get();
    }
    // A listener that fails must not leave a file listed that the rest of the
    // module already treats as gone.
    try {
        signalBeforeRemoved.emit(record);
        signalRemoved.emit(record);
    } catch (const std::exception& error) {
        std::cout << error.what() << '\n';
    }
    std::unique_ptr<FileRecordModel> doomed;
    {
        // Listeners may have added or removed files meanwhile: find it again.
        std::lock_guard<std::mutex> lock(recordsMutex);
        const auto it = std::find_if(records.begin(), records.end(),
                                     [&](const auto& own) { return own.get() == record; });
        if (it == records.end())
            return;
        doomed = std::move(*it);
        records.erase(it);
    }
}

} // namespace TavNA
