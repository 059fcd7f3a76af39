// tavna-bench-bus: the analyser on the captures of a bay-level process bus,
// driven through the X server as a person drives it. Per run: choose the
// 100-publisher capture in the menu's chooser and time until the list shows
// its sections, then pick the first stream and time until its eight boxes
// show; then choose a capture whose one GOOSE stream carries ten thousand
// values, pick it and time the first boxes and all of them, with a 10 ms timer
// on the main loop meanwhile. Prints medians and worst cases over runs.
#include "bench/BenchCapture.h"
#include "bench/BenchFigures.h"
#include "tools/session/Display.h"
#include "tools/session/HostSession.h"
#include "tools/session/MainLoopProbe.h"
#include "tools/session/Person.h"
#include "tools/session/UiCall.h"
#include "tools/session/WidgetQuery.h"

#include <gtkmm/checkbutton.h>
#include <gtkmm/main.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace TavSession;
using namespace std::chrono_literals;

constexpr int Runs = 5;

struct Figures {
    std::vector<double> listMs, pickMs, firstBoxesMs, allBoxesMs, lateMs;
};

void busRun(Figures& figures) {
    runHostSession({TAVNA_EXE, TAVNA_RUN_DIR, {}}, [&] {
        Person user;
        waitFor("the main window", [&] { return user.sees("Список SV и GOOSE"); });
        const auto chosen = user.openThroughMenu(TAVNA_BUS_CAPTURE);
        waitFor("the list",
                [&] { return !user.loading() && user.sees("SV (40)") && !user.streams().empty(); });
        figures.listMs.push_back(msSince(chosen, Clock::now()));
        const auto picked = user.click(user.streams().front());
        waitFor("the boxes", [&] { return user.channels().size() == 8; });
        figures.pickMs.push_back(msSince(picked, Clock::now()));
        user.closeMainWindow();
    });
}

void wideRun(Figures& figures) {
    runHostSession({TAVNA_EXE, TAVNA_RUN_DIR, {TAVNA_WIDE_CAPTURE}}, [&] {
        Person user;
        waitFor(
            "the stream", [&] { return !user.loading() && user.streams().size() == 1; }, 60s);
        std::unique_ptr<MainLoopProbe> probe;
        onUi([&] { probe = std::make_unique<MainLoopProbe>(10ms); });
        const auto picked = user.click(user.streams().front());
        waitFor(
            "the first boxes", [&] { return !user.channels().empty(); }, 30s);
        figures.firstBoxesMs.push_back(msSince(picked, Clock::now()));
        // Counting walks every widget on the main loop: seldom, so that it
        // does not itself make the loop late.
        waitFor(
            "all boxes",
            [&] {
                std::this_thread::sleep_for(250ms);
                return user.channelBoxes() == 10000;
            },
            120s);
        figures.allBoxesMs.push_back(msSince(picked, Clock::now()));
        onUi([&] {
            figures.lateMs.push_back(probe->worstLateness().count() / 1000.0);
            probe.reset();
        });
        user.closeMainWindow();
    });
}

} // namespace

int main(int argc, char** argv) {
    ensureDisplay(argc, argv);
    Gtk::Main kit(argc, argv);
    writeCaptureOnce(TAVNA_BUS_CAPTURE, "--sv 40 --goose 60");
    writeCaptureOnce(TAVNA_WIDE_CAPTURE, "--goose 1 --bools 10000 --duration 0.05");
    std::printf("captures %s and %s, %d runs\n", TAVNA_BUS_CAPTURE, TAVNA_WIDE_CAPTURE, Runs);
    Figures figures;
    try {
        for (int run = 0; run < Runs; ++run) {
            busRun(figures);
            wideRun(figures);
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "tavna-bench-bus: %s\n", e.what());
        return 1;
    }
    report("100 streams: file chosen -> list shown", figures.listMs, 2000);
    report("100 streams: stream picked -> its 8 boxes shown", figures.pickMs, 100);
    report("10000 values: stream picked -> first boxes shown", figures.firstBoxesMs, 1000);
    report("10000 values: stream picked -> all boxes made", figures.allBoxesMs, 0);
    report("10000 values: main loop lateness while filling (worst/run)", figures.lateMs, 100);
    return 0;
}
