#include "presenter/FileRecordPresenter.h"

#include "view/FileRecordView.h"

namespace TavNA {

FileRecordPresenter::FileRecordPresenter(FileRecordModel* record, const std::string& path)
    : record(record), path(path), view(std::make_unique<FileRecordView>()) {
    view->setFileName(path);
    view->signalRemoveClicked.connect(sigc::mem_fun(*this, &FileRecordPresenter::_onRemoveClicked));
}

FileRecordPresenter::~FileRecordPresenter() = default;

Tav::IView* FileRecordPresenter::getView() {
    return view.get();
}

Tav::IView* FileRecordPresenter::getNameView() {
    return view->getNameView();
}

Tav::IView* FileRecordPresenter::getRemoveButtonView() {
    return view->getRemoveButtonView();
}

void FileRecordPresenter::_onRemoveClicked() {
    signalRemoveClicked.emit(record);
}

} // namespace TavNA
