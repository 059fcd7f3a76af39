#pragma once

#include "platform/view/IPresenter.h"

#include <memory>
#include <sigc++/signal.h>
#include <string>

namespace TavNA {

class FileRecordModel;
class FileRecordView;

// One row of the file list. The record may be gone by the time the row is
// made (the list hops threads), so the row keeps its own copy of the path and
// uses the record only as an identity to hand back to the list.
class FileRecordPresenter : public Tav::IPresenter {
public:
    FileRecordPresenter(FileRecordModel* record, const std::string& path);
    ~FileRecordPresenter() override;

    sigc::signal<void(FileRecordModel*)> signalRemoveClicked;

    Tav::IView* getView() override;
    FileRecordModel* getModel() const { return record; }
    const std::string& getPath() const { return path; }
    Tav::IView* getNameView();
    Tav::IView* getRemoveButtonView();

private:
    void _onRemoveClicked();

    FileRecordModel* record;
    std::string path;
    std::unique_ptr<FileRecordView> view;
};

} // namespace TavNA
