// Captures the size of a real process bus: a hundred publishers, and a data
// set thousands of values wide. The window must fit the screen, every stream
// must be reachable, and a pick must never freeze the window.
#include "platform/common/Log.h"
#include "tests/support/TestCaptures.h"
#include "tools/session/HostSession.h"
#include "tools/session/MainLoopProbe.h"
#include "tools/session/Person.h"
#include "tools/session/UiCall.h"
#include "tools/session/WidgetQuery.h"

#include <gtest/gtest.h>

#include <gtkmm/button.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/window.h>

#include <cstdio>
#include <iostream>
#include <memory>
#include <thread>

using namespace TavSession;
using namespace std::chrono_literals;

namespace {

HostRun hostOn(std::vector<std::string> files) {
    return {TAVNA_EXE, TAVNA_RUN_DIR, std::move(files)};
}

// The screen the tests' display has.
constexpr int ScreenWidth = 1600;
constexpr int ScreenHeight = 1000;

// The stream button whose caption starts with `start`, showing or not.
Gtk::Button* streamButton(const std::string& start) {
    Gtk::Button* found = nullptr;
    forEachWidget([&](Gtk::Widget& w) {
        auto* b = dynamic_cast<Gtk::Button*>(&w);
        if (found == nullptr && b != nullptr && b->get_style_context()->has_class("stream") &&
            std::string(b->get_label()).rfind(start, 0) == 0)
            found = b;
    });
    return found;
}

// The widget that reads `text`, showing or scrolled away.
Gtk::Widget* anyWithText(const std::string& text) {
    Gtk::Widget* found = nullptr;
    forEachWidget([&](Gtk::Widget& w) {
        if (found == nullptr && w.get_visible() && textOf(w) == text)
            found = &w;
    });
    return found;
}

bool whollyShowing(Gtk::Widget& w) {
    const Rect r = visibleRect(w);
    return showing(w) && r.height == w.get_allocated_height() && r.height > 0;
}

void expectWindowFitsTheScreen(const char* when) {
    onUi([&] {
        Gtk::Window* window = largestWindow();
        ASSERT_NE(window, nullptr) << when;
        EXPECT_LE(window->get_width(), ScreenWidth) << when;
        EXPECT_LE(window->get_height(), ScreenHeight) << when;
        Gtk::Widget* status = findByText("PCAP");
        ASSERT_NE(status, nullptr) << "the status bar, " << when;
        const Rect r = visibleRect(*status);
        EXPECT_GT(r.height, 0) << when;
        EXPECT_LE(r.y + r.height, ScreenHeight) << when;
    });
}

class WideCapture : public testing::Test {
protected:
    void SetUp() override {
        TavLog::Log::setFilePath(TavTest::tempDir() + "/" +
                                 testing::UnitTest::GetInstance()->current_test_info()->name() +
                                 ".log");
    }
};

TEST_F(WideCapture, AHundredStreamsFitTheScreenAndTheLastOneCanBePicked) {
    const std::string capture = TavTest::tempDir() + "/bus100.pcap";
    TavTest::runGenerator({capture, "--sv", "40", "--goose", "60"});
    // The last in the list: the highest destination MAC among the GOOSE.
    const std::string last = "01:0c:cd:01:00:3b TavnaGOOSE59";

    runHostSession(hostOn({capture}), [&] {
        Person user;
        user.waitForLoad("bus100.pcap");
        waitFor("the list", [&] { return user.sees("GOOSE (60)") || !user.streams().empty(); });
        expectWindowFitsTheScreen("after the load");
        EXPECT_FALSE(onUi([&] { return whollyShowing(*streamButton(last)); }));
        user.screenshot("bus100-opened");

        // The wheel over the list, as a person scrolls to the end.
        const Point inList = user.whereIs(user.streams().front());
        waitFor("the last GOOSE stream in sight", [&] {
            if (onUi([&] { return whollyShowing(*streamButton(last)); }))
                return true;
            user.hands.wheel(inList, -5);
            return false;
        });
        expectWindowFitsTheScreen("scrolled to the end");
        const std::string caption =
            onUi([&] { return std::string(streamButton(last)->get_label()); });
        user.click(caption);
        // The boxes open below the entry, at the end of the list: scroll on.
        waitFor("the channels of TavnaGOOSE59", [&] {
            if (user.channels().size() == 4)
                return true;
            user.hands.wheel(inList, -5);
            return false;
        });

        const Rect plot = user.plot();
        const auto before = onUi([&] { return ScreenImage::grab(plot); });
        user.tick(user.channels().front());
        waitFor("the channel drawn", [&] {
            return onUi([&] {
                const auto now = ScreenImage::grab(plot);
                int changed = 0;
                for (int y = plot.y; y < plot.y + plot.height; y += 2)
                    for (int x = plot.x; x < plot.x + plot.width; x += 2) {
                        const Rgb a = before.at({x, y}), b = now.at({x, y});
                        changed += a.r != b.r || a.g != b.g || a.b != b.b;
                    }
                return changed > 100;
            });
        });
        expectWindowFitsTheScreen("with a channel drawn");
        user.screenshot("bus100-picked");
        user.closeMainWindow();
    });
}

// A window that answers keeps its timer within this; beyond it the window
// visibly hangs. The target, 100 ms, is measured by the benchmark: a limit
// that tight would fail on a loaded machine without any fault.
constexpr auto HangLimit = 500ms;

TEST_F(WideCapture, TenThousandChannelsComeWithoutStallingTheWindow) {
    const std::string capture = TavTest::tempDir() + "/wide10000.pcap";
    TavTest::runGenerator({capture, "--goose", "1", "--bools", "10000", "--duration", "0.05"});
    std::unique_ptr<MainLoopProbe> probe;
    std::chrono::microseconds worstLateness{0};
    long ticks = 0;
    Clock::duration firstBoxes{}, allBoxes{};

    runHostSession(hostOn({capture}), [&] {
        Person user;
        user.waitForLoad("wide10000.pcap");
        waitFor("the stream", [&] { return user.streams().size() == 1; });
        onUi([&] { probe = std::make_unique<MainLoopProbe>(10ms); });
        const auto picked = user.click(user.streams().front());
        waitFor(
            "the first check boxes", [&] { return !user.channels().empty(); }, 30s);
        firstBoxes = Clock::now() - picked;
        waitFor(
            "all ten thousand check boxes", [&] { return user.channelBoxes() == 10000; }, 120s);
        allBoxes = Clock::now() - picked;
        onUi([&] {
            worstLateness = probe->worstLateness();
            ticks = probe->ticks();
            probe.reset();
        });
        // The boxes keep their names and order, and still tick.
        const auto shown = user.channels();
        ASSERT_GE(shown.size(), 2u);
        EXPECT_EQ(shown[0], "1");
        EXPECT_EQ(shown[1], "2");
        user.tick(shown[0]);
        waitUntil("the tick", [] {
            auto ticked = showingWidgets<Gtk::CheckButton>(
                [](Gtk::CheckButton& b) { return b.get_active(); });
            return ticked.size() == 1 && ticked.front()->get_label() == "1";
        });
        expectWindowFitsTheScreen("with ten thousand boxes");
        user.screenshot("wide10000");
        user.closeMainWindow();
    });

    using std::chrono::duration_cast;
    using std::chrono::milliseconds;
    std::cout << "pick of 10000 channels: first boxes after "
              << duration_cast<milliseconds>(firstBoxes).count() << " ms, all after "
              << duration_cast<milliseconds>(allBoxes).count() << " ms; main loop worst lateness "
              << worstLateness.count() / 1000.0 << " ms over " << ticks << " ticks of 10 ms"
              << std::endl;
    RecordProperty("worst_lateness_us", static_cast<int>(worstLateness.count()));
    EXPECT_GT(ticks, 10);
    EXPECT_LT(worstLateness, HangLimit);
}

// Fifty files open: the list of files scrolls, and its last row can be reached
// and closed, while the window stays on the screen and keeps answering.
TEST_F(WideCapture, FiftyFilesScrollInTheirPanel) {
    std::vector<std::string> files;
    for (int i = 0; i < 50; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "/file%02d.pcap", i);
        files.push_back(TavTest::tempDir() + name);
        TavTest::runGenerator({files.back(), "--sv", "1", "--duration", "0.01"});
    }
    std::unique_ptr<MainLoopProbe> probe;
    std::chrono::microseconds worstLateness{0};

    runHostSession(hostOn(files), [&] {
        Person user;
        onUi([&] { probe = std::make_unique<MainLoopProbe>(10ms); });
        waitFor(
            "all fifty files",
            [&] {
                std::this_thread::sleep_for(100ms);
                return !user.loading() && onUi([] { return anyWithText("file49.pcap"); });
            },
            120s);
        onUi([&] {
            worstLateness = probe->worstLateness();
            probe.reset();
        });
        expectWindowFitsTheScreen("with fifty files");
        EXPECT_FALSE(onUi([] { return whollyShowing(*anyWithText("file49.pcap")); }));

        const Point inFiles = user.whereIs("file00.pcap");
        waitFor("the last file in sight", [&] {
            if (onUi([] { return whollyShowing(*anyWithText("file49.pcap")); }))
                return true;
            user.hands.wheel(inFiles, -5);
            return false;
        });
        user.screenshot("fifty-files");
        user.removeFile("file49.pcap");
        waitFor("file49.pcap to go",
                [&] { return onUi([] { return anyWithText("file49.pcap") == nullptr; }); });
        expectWindowFitsTheScreen("after closing one");
        user.closeMainWindow();
    });
    std::cout << "fifty files: main loop worst lateness " << worstLateness.count() / 1000.0 << " ms"
              << std::endl;
    EXPECT_LT(worstLateness, HangLimit);
}

} // namespace
