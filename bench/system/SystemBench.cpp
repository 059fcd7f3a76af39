// tavna-bench-system: the whole analyser on a 1 GB capture (8 merging units,
// 200 s), driven through the X server as a person drives it. Per run: choose
// the file in the menu's chooser and time until the stream list shows all
// eight streams, with a 10 ms timer on the main loop meanwhile; then pick a
// stream and tick its eight channels one after another, timing each tick to
// the paint that shows its curve; last, show the whole capture with a double
// click and time its paint. Prints medians and worst cases over runs.
#include "bench/BenchCapture.h"
#include "bench/BenchFigures.h"
#include "platform/view/oscillograph/Oscillograph.h"
#include "tools/session/Display.h"
#include "tools/session/HostSession.h"
#include "tools/session/MainLoopProbe.h"
#include "tools/session/Person.h"
#include "tools/session/UiCall.h"

#include <gtkmm/drawingarea.h>
#include <gtkmm/main.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace {

using namespace TavSession;
using namespace std::chrono_literals;

constexpr int Runs = 5;

// The last paint of the plot and how many curves it drew; written on the
// main thread, read by the person.
class PaintWatch {
public:
    void start() {
        // After the widget and its plot area have painted.
        connection_ = scopeWidget().signal_draw().connect(
            [this](const Cairo::RefPtr<Cairo::Context>&) {
                const auto curves = scopeWidget().layout().curves.size();
                std::lock_guard lock(mutex_);
                last_ = Clock::now();
                curves_ = curves;
                return false;
            },
            true);
    }
    void stop() { connection_.disconnect(); }
    // The paint that first showed `curves` curves after `since`, if any yet.
    bool painted(std::size_t curves, Clock::time_point since, Clock::time_point& at) {
        std::lock_guard lock(mutex_);
        if (curves_ != curves || last_ < since)
            return false;
        at = last_;
        return true;
    }

private:
    std::mutex mutex_;
    Clock::time_point last_{};
    std::size_t curves_ = 0;
    sigc::connection connection_;
};

struct Figures {
    std::vector<double> streamListMs, lateMs, tickMs, eighthTickMs, wholeMs;
};

void oneRun(const std::string& capture, Figures& figures) {
    runHostSession({TAVNA_EXE, TAVNA_RUN_DIR, {}}, [&] {
        Person user;
        waitFor("the main window", [&] { return user.sees("Список SV и GOOSE"); });
        std::unique_ptr<MainLoopProbe> probe;
        const auto chosen = user.openThroughMenu(capture);
        onUi([&] { probe = std::make_unique<MainLoopProbe>(10ms); });
        waitFor(
            "eight streams", [&] { return user.streams().size() == 8 && !user.loading(); }, 120s);
        figures.streamListMs.push_back(msSince(chosen, Clock::now()));
        onUi([&] {
            figures.lateMs.push_back(probe->worstLateness().count() / 1000.0);
            probe.reset();
        });

        user.click(user.streams().front());
        waitFor("the channels", [&] { return user.channels().size() == 8; });
        PaintWatch paints;
        onUi([&] { paints.start(); });
        std::size_t ticked = 0;
        for (const auto& channel : user.channels()) {
            const auto tick = user.tick(channel);
            Clock::time_point painted;
            ++ticked;
            waitFor("the curve of " + channel,
                    [&] { return paints.painted(ticked, tick, painted); });
            figures.tickMs.push_back(msSince(tick, painted));
        }
        figures.eighthTickMs.push_back(figures.tickMs.back());

        // A double click shows all 200 s: every curve is read again over
        // the whole capture.
        const auto shown = user.hands.doubleClick(user.plot().centre());
        Clock::time_point painted;
        waitFor("the whole capture", [&] { return paints.painted(8, shown, painted); });
        figures.wholeMs.push_back(msSince(shown, painted));
        onUi([&] { paints.stop(); });
        user.closeMainWindow();
    });
}

} // namespace

int main(int argc, char** argv) {
    ensureDisplay(argc, argv);
    Gtk::Main kit(argc, argv);
    writeCaptureOnce(TAVNA_BENCH_CAPTURE, "--sv 8 --duration 200");
    std::printf("capture %s, %.0f MB, %d runs\n", TAVNA_BENCH_CAPTURE,
                std::filesystem::file_size(TAVNA_BENCH_CAPTURE) / 1e6, Runs);
    Figures figures;
    try {
        for (int run = 0; run < Runs; ++run)
            oneRun(TAVNA_BENCH_CAPTURE, figures);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "tavna-bench-system: %s\n", e.what());
        return 1;
    }
    report("file chosen -> stream list shown", figures.streamListMs, 2000);
    report("main loop lateness while loading (worst/run)", figures.lateMs, 100);
    report("channel ticked -> its curve painted", figures.tickMs, 100);
    report("eighth channel ticked -> 8 curves painted", figures.eighthTickMs, 100);
    report("double click -> 8 curves over all 200 s painted", figures.wholeMs, 100);
    return 0;
}
