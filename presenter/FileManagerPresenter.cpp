#include "presenter/FileManagerPresenter.h"

#include "model/FileManagerModel.h"
#include "presenter/FileRecordPresenter.h"
#include "view/FileManagerView.h"

#include <algorithm>
#include <sigc++/functors/mem_fun.h>

namespace TavNA {

FileManagerPresenter::FileManagerPresenter(FileManagerModel& model)
    : view(std::make_unique<FileManagerView>()), model(model),
      aliveToken(Tav::UpdateViewGuard::makeToken()) {
    model.signalAdded.connect(sigc::mem_fun(*this, &FileManagerPresenter::_onAdded));
    model.signalRemoved.connect(sigc::mem_fun(*this, &FileManagerPresenter::_onRemoved));
    // A list handed over with files already in it.
    for (const auto& record : model.getRecords())
        _addRow(record.get(), record->fileName);
}

FileManagerPresenter::~FileManagerPresenter() {
    // Rows go before the panel that holds their buttons.
    dispatcher.disconnectAll();
    records.clear();
}

Tav::IView* FileManagerPresenter::getView() {
    return view.get();
}

// May run on the parse worker. The record may be freed before the posted row
// is made, so the row keeps the path and uses the record only as an identity.
// Not tied to the load: a file added by a load that the next open cancelled
// is open all the same.
void FileManagerPresenter::_onAdded(FileRecordModel* record) {
    Tav::UpdateViewGuard::safeBeginUpdateView(
        aliveToken, [this, record, path = record->fileName] { _addRow(record, path); });
}

// Posted, so that a row is never destroyed inside its own click. Only the
// record's address is compared once posted: it is freed by then.
void FileManagerPresenter::_onRemoved(FileRecordModel* record) {
    Tav::UpdateViewGuard::safeBeginUpdateView(
        aliveToken, [this, record, path = record->fileName] { _removeRow(record, path); });
}

// The row of the removed record itself when there is one, else the first row
// of its path: a row of a repeated path must not outlive its own record.
void FileManagerPresenter::_removeRow(const FileRecordModel* record, const std::string& path) {
    auto row = std::find_if(records.begin(), records.end(),
                            [record](const auto& r) { return r->getModel() == record; });
    if (row == records.end())
        row = std::find_if(records.begin(), records.end(),
                           [&path](const auto& r) { return r->getPath() == path; });
    if (row == records.end())
        return;
    dispatcher.disconnect(row->get());
    records.erase(row);
}

// A click queued behind a removal names a record that is gone.
void FileManagerPresenter::_onRemoveClicked(FileRecordModel* record) {
    const auto row = std::find_if(records.begin(), records.end(),
                                  [record](const auto& r) { return r->getModel() == record; });
    if (row != records.end() && model.holds(record, (*row)->getPath()))
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

} // namespace TavNA
