#include "presenter/FileManagerPresenter.h"

#include "model/CurrentLoad.h"
#include "model/FileManagerModel.h"
#include "presenter/FileRecordPresenter.h"
#include "view/FileManagerView.h"

#include <algorithm>
#include <sigc++/functors/mem_fun.h>

namespace TavNA {

FileManagerPresenter::FileManagerPresenter(FileManagerModel& model, CurrentLoad& load)
    : view(std::make_unique<FileManagerView>()), model(model), load(load),
      aliveToken(Tav::UpdateViewGuard::makeToken()) {
    // A file added by a load shows once the load has settled; a removal,
    // which comes from a row's own button, is followed from the queue so the
    // row is not destroyed inside its own click.
    load.signalSettled.connect(sigc::mem_fun(*this, &FileManagerPresenter::_sync));
    const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken> alive = aliveToken;
    model.signalRemoved.connect(
        [alive, this, &load](FileRecordModel*) { load.post(alive, [this] { _sync(); }); });
    _sync();
}

FileManagerPresenter::~FileManagerPresenter() {
    // Rows go before the panel that holds their buttons.
    dispatcher.disconnectAll();
    records.clear();
}

Tav::IView* FileManagerPresenter::getView() {
    return view.get();
}

// The row's record may be gone already (a click queued behind a removal):
// the row's own path names the file.
void FileManagerPresenter::_onRemoveClicked(FileRecordModel* record) {
    const auto row = std::find_if(records.begin(), records.end(),
                                  [record](const auto& r) { return r->getModel() == record; });
    if (row != records.end())
        model.remove((*row)->getPath());
}

void FileManagerPresenter::_sync() {
    const auto& files = model.getRecords();
    auto listed = [&files](const std::string& path) {
        return std::any_of(files.begin(), files.end(),
                           [&path](const auto& file) { return file->fileName == path; });
    };
    for (auto row = records.begin(); row != records.end();) {
        if (listed((*row)->getPath())) {
            ++row;
            continue;
        }
        dispatcher.disconnect(row->get());
        row = records.erase(row);
    }
    for (const auto& file : files) {
        const bool shown = std::any_of(records.begin(), records.end(), [&file](const auto& row) {
            return row->getPath() == file->fileName;
        });
        if (!shown)
            _addRow(file.get(), file->fileName);
    }
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
