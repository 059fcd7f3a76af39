#include "presenter/FileManagerPresenter.h"

#include "model/FileManagerModel.h"
#include "presenter/FileRecordPresenter.h"
#include "view/FileManagerView.h"

#include <algorithm>

namespace TavNA {

FileManagerPresenter::FileManagerPresenter(FileManagerModel& model)
    : view(std::make_unique<FileManagerView>()), model(model),
      aliveToken(Tav::UpdateViewGuard::makeToken()) {
    // Slots that are never cut and reach this presenter only through work the
    // token guards: files come and go on the parse worker, which must neither
    // race a disconnect nor find the presenter gone.
    const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken> alive = aliveToken;
    model.signalAdded.connect(
        [alive, this](FileRecordModel* record) { _onAdded(alive, this, record); });
    model.signalRemoved.connect(
        [alive, this](FileRecordModel* record) { _onRemoved(alive, this, record); });
}

FileManagerPresenter::~FileManagerPresenter() {
    // Rows go before the panel that holds their buttons.
    dispatcher.disconnectAll();
    records.clear();
}

Tav::IView* FileManagerPresenter::getView() {
    return view.get();
}

// The record is destroyed as soon as a removal returns, so only its path and
// its address travel to the interface thread; the row and its widgets are
// made there, never on the worker.
void FileManagerPresenter::_onAdded(const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive,
                                    FileManagerPresenter* self, FileRecordModel* record) {
    const std::string path = record->fileName;
    Tav::UpdateViewGuard::safeBeginUpdateView(
        alive, [self, record, path] { self->_addRow(record, path); });
}

void FileManagerPresenter::_onRemoved(
    const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken>& alive, FileManagerPresenter* self,
    FileRecordModel* record) {
    const std::string path = record->fileName;
    Tav::UpdateViewGuard::safeBeginUpdateView(alive, [self, path] { self->_removeRow(path); });
}

// The row stays until the model reports the removal.
void FileManagerPresenter::_onRemoveClicked(FileRecordModel* record) {
    model.remove(*record);
}

void FileManagerPresenter::_addRow(FileRecordModel* record, const std::string& path) {
    auto row = std::make_unique<FileRecordPresenter>(record, path);
    FileRecordPresenter* added = row.get();
    records.push_back(std::move(row));
    dispatcher.connect(added, added->signalRemoveClicked.connect(
                                  sigc::mem_fun(*this, &FileManagerPresenter::_onRemoveClicked)));
    view->setRowView(added->getNameView(), added->getRemoveButtonView());
}

void FileManagerPresenter::_removeRow(const std::string& path) {
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&path](const auto& row) { return row->getPath() == path; });
    if (found == records.end())
        return;
    dispatcher.disconnect(found->get());
    records.erase(found);
}

} // namespace TavNA
