#pragma once

#include "health/HealthWorker.h"
#include "model/TavNaModel.h"
#include "platform/view/IPresenter.h"
#include "platform/view/UpdateViewGuard.h"
#include "view/DiagnosticsView.h"

#include <atomic>
#include <functional>
#include <memory>
#include <sigc++/connection.h>
#include <string>
#include <thread>
#include <vector>

namespace TavNA {

class IGroup;

// The stream checks in the window: a verdict per stream while none is picked,
// the picked stream's counts and events otherwise. Checks run on a worker of
// their own, the picked stream first; the worker is stopped before anything
// changes the database it reads.
class DiagnosticsPresenter : public Tav::IPresenter {
public:
    // Shows [from, to] seconds of the oscillograph's time axis.
    using MoveWindow = std::function<void(double from, double to)>;

    DiagnosticsPresenter(TavNaModel& model, MoveWindow moveWindow);
    DiagnosticsPresenter(const DiagnosticsPresenter&) = delete;
    DiagnosticsPresenter& operator=(const DiagnosticsPresenter&) = delete;
    ~DiagnosticsPresenter() override;

    Tav::IView* getView() override { return view.get(); }
    DiagnosticsView& getViewObj() { return *view; }

private:
    struct Entry {
        const IGroup* group = nullptr;
        TavHealth::HealthTarget target;
        std::string title;
        std::shared_ptr<const TavHealth::StreamHealth> health;
        std::string error;
    };

    void _onTreeUpdated();
    void _onGroupSelected(const IGroup* group);
    void _onEventActivated(std::size_t index);
    void _onChecked(std::uint64_t run, std::size_t entry,
                    std::shared_ptr<const TavHealth::StreamHealth> health,
                    const std::string& error);
    void _stop();
    void _check();
    void _recheck();
    void _refresh();
    const Entry* _picked() const;
    std::string _verdict(const Entry& entry) const;
    double _axisSeconds(const TavIec61850Parser::Timest& t) const;

    TavNaModel& model;
    MoveWindow moveWindow;
    std::unique_ptr<DiagnosticsView> view;
    TavHealth::HealthWorker worker;
    std::vector<Entry> entries;
    const IGroup* picked = nullptr;
    std::uint64_t run = 0; // deliveries of an older run are stale
    std::vector<sigc::connection> connections;
    std::shared_ptr<Tav::UpdateViewGuard::LifetimeToken> liveness;
};

} // namespace TavNA
