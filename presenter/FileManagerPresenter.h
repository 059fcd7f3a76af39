#pragma once

#include "platform/common/PointerConnectionsDispatcher.h"
#include "platform/view/IPresenter.h"
#include "platform/view/UpdateViewGuard.h"

#include <memory>
#include <string>
#include <vector>

namespace TavNA {

class CurrentLoad;
class FileManagerModel;
class FileManagerView;
class FileRecordModel;
class FileRecordPresenter;

// The list of open files. Files are added and removed on the parse worker
// too; the rows follow the model's list on the interface thread, once a load
// has settled and after each removal.
class FileManagerPresenter : public Tav::IPresenter {
public:
    FileManagerPresenter(FileManagerModel& model, CurrentLoad& load);
    ~FileManagerPresenter() override;

    Tav::IView* getView() override;
    const std::vector<std::unique_ptr<FileRecordPresenter>>& rows() const { return records; }

private:
    void _onRemoveClicked(FileRecordModel* record);
    // Makes the rows match the model's files, in the model's order.
    void _sync();
    void _addRow(FileRecordModel* record, const std::string& path);

    std::unique_ptr<FileManagerView> view;
    std::vector<std::unique_ptr<FileRecordPresenter>> records;
    Tav::PointerConnectionsDispatcher dispatcher;
    FileManagerModel& model;
    CurrentLoad& load;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> aliveToken;
};

} // namespace TavNA
