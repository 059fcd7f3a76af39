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

// The list of open files. Files are added on the parse worker too; rows are
// made and dropped on the interface thread, from work the list's own add and
// remove signals post.
class FileManagerPresenter : public Tav::IPresenter {
public:
    explicit FileManagerPresenter(FileManagerModel& model);
    ~FileManagerPresenter() override;

    Tav::IView* getView() override;
    const std::vector<std::unique_ptr<FileRecordPresenter>>& rows() const { return records; }

private:
    void _onAdded(FileRecordModel* record);
    void _onRemoved(FileRecordModel* record);
    void _onRemoveClicked(FileRecordModel* record);
    void _removeRow(const FileRecordModel* record, const std::string& path);
    void _addRow(FileRecordModel* record, const std::string& path);

    std::unique_ptr<FileManagerView> view;
    std::vector<std::unique_ptr<FileRecordPresenter>> records;
    Tav::PointerConnectionsDispatcher dispatcher;
    FileManagerModel& model;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> aliveToken;
};

} // namespace TavNA
