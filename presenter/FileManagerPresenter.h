#pragma once

#include "platform/common/PointerConnectionsDispatcher.h"
#include "platform/view/IPresenter.h"
#include "platform/view/UpdateViewGuard.h"

#include <memory>
#include <string>
#include <vector>

namespace TavNA {

class FileManagerModel;
class FileManagerView;
class FileRecordModel;
class FileRecordPresenter;

// The list of open files. Files are added and removed on the parse worker
// too, so every change of the rows goes through the interface thread's queue.
class FileManagerPresenter : public Tav::IPresenter {
public:
    explicit FileManagerPresenter(FileManagerModel& model);
    ~FileManagerPresenter() override;

    Tav::IView* getView() override;
    const std::vector<std::unique_ptr<FileRecordPresenter>>& rows() const { return records; }

private:
    // Run on the emitting thread; `self` is used only by the posted work.
    static void _onAdded(const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive,
                         FileManagerPresenter* self, FileRecordModel* record);
    static void _onRemoved(const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive,
                           FileManagerPresenter* self, FileRecordModel* record);
    void _onRemoveClicked(FileRecordModel* record);
    void _addRow(FileRecordModel* record, const std::string& path);
    void _removeRow(const std::string& path);

    std::unique_ptr<FileManagerView> view;
    std::vector<std::unique_ptr<FileRecordPresenter>> records;
    Tav::PointerConnectionsDispatcher dispatcher;
    FileManagerModel& model;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> aliveToken;
};

} // namespace TavNA
