#pragma once

#include "platform/view/IView.h"
#include "platform/view/UpdateViewGuard.h"
#include "scl/SclModel.h"

#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace TavNA {

class TavNaModel;

// "Файл" → "Открыть SCL…": the chosen file is read on a worker of its own,
// so that a substation of tens of megabytes leaves the window answering, and
// joins the model's configuration on the interface thread.
class SclOpenPresenter {
public:
    SclOpenPresenter(TavNaModel& model, Tav::IView* parent);
    SclOpenPresenter(const SclOpenPresenter&) = delete;
    SclOpenPresenter& operator=(const SclOpenPresenter&) = delete;
    // Waits for a read under way.
    ~SclOpenPresenter();

    // Asks for a file and reads it; nothing while a read is under way.
    void start();
    bool isReading() const { return worker.joinable(); }

private:
    struct Outcome {
        std::optional<TavScl::SclFile> file;
        std::string error;
    };

    void _read(const std::string& path);
    void _onRead(const std::shared_ptr<Outcome>& outcome);

    TavNaModel& model;
    Tav::IView* parent;
    int modeAtStart = 0;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> alive;
    // Last: it goes first, and the destructor has joined it by then.
    std::thread worker;
};

} // namespace TavNA
