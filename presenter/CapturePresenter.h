#pragma once

#include <memory>
#include <sigc++/connection.h>
#include <string>
#include <vector>

namespace Tav {
class IView;
}

namespace TavNA {

class CaptureBar;
class TavNaModel;

// Live capture from the user's side: the status bar's chooser and button, the
// "Захват" menu's items, the counts while capturing and what is said when a
// capture cannot start or ends by itself. The counts are polled a few times a
// second: the interface thread gets summaries, never one event per frame.
class CapturePresenter {
public:
    // `parent` holds the bar; dialogs go over its window.
    CapturePresenter(TavNaModel& model, CaptureBar& bar, Tav::IView* parent);
    ~CapturePresenter();
    CapturePresenter(const CapturePresenter&) = delete;
    CapturePresenter& operator=(const CapturePresenter&) = delete;

    // All do nothing outside ETHERNET mode.
    void start();
    void stop();
    void save();
    // The interfaces are listed again on entering ETHERNET mode.
    void onModeChanged();

    // What the user is told when the system refuses the right to capture.
    static std::string noRightText();
    static std::string noRightDetail();

private:
    void _refresh();
    void _onStopped(const std::string& reason);
    void _tell(const std::string& message, const std::string& detail);

    TavNaModel& model;
    CaptureBar& bar;
    Tav::IView* parent;
    sigc::connection ticking;
    sigc::connection stoppedConnection;
};

} // namespace TavNA
