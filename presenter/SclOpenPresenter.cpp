#include "presenter/SclOpenPresenter.h"

#include "model/TavNaModel.h"
#include "platform/common/Log.h"
#include "platform/view/DialogPresenter.h"
#include "platform/view/FileDialogPresenter.h"
#include "scl/SclReader.h"

namespace TavNA {

SclOpenPresenter::SclOpenPresenter(TavNaModel& model, Tav::IView* parent)
    : model(model), parent(parent), alive(Tav::UpdateViewGuard::makeToken()) {}

SclOpenPresenter::~SclOpenPresenter() {
    if (worker.joinable())
        worker.join();
}

void SclOpenPresenter::start() {
    if (worker.joinable())
        return;
    const std::string path = Tav::FileDialogPresenter::show(
        parent, "Открыть SCL", {{"SCL (*.scd *.icd *.cid *.xml)", "*.scd *.icd *.cid *.xml"}},
        false);
    if (!path.empty())
        _read(path);
}

void SclOpenPresenter::_read(const std::string& path) {
    TavLog::Log::writeInfo("Чтение файла SCL: " + path);
    modeAtStart = static_cast<int>(model.getMode());
    const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken> token = alive;
    worker = std::thread([this, token, path] {
        auto outcome = std::make_shared<Outcome>();
        try {
            outcome->file = TavScl::readSclFile(path);
        } catch (const std::exception& e) {
            outcome->error = e.what();
        }
        Tav::UpdateViewGuard::safeBeginUpdateView(token, [this, outcome] { _onRead(outcome); });
    });
}

void SclOpenPresenter::_onRead(const std::shared_ptr<Outcome>& outcome) {
    if (worker.joinable())
        worker.join();
    if (!outcome->error.empty()) {
        TavLog::Log::writeError("Файл SCL не прочитан: " + outcome->error);
        Tav::DialogPresenter::show(parent, "Не удалось прочитать файл SCL.", outcome->error,
                                   static_cast<Tav::DialogResult>(16));
        return;
    }
    // A mode switch meanwhile emptied the configuration the file was meant for.
    if (static_cast<int>(model.getMode()) == modeAtStart)
        model.getScl().add(std::move(*outcome->file));
}

} // namespace TavNA
