// A person's whole session with the analyser: the host application with the
// real module, real captures, and pointer and keyboard input through the X
// server. Each step checks what is on the screen afterwards.
#include "platform/common/Log.h"
#include "tests/support/TestCaptures.h"
#include "tools/session/HostSession.h"
#include "tools/session/MainLoopProbe.h"
#include "tools/session/Person.h"
#include "tools/session/UiCall.h"
#include "tools/session/WidgetQuery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <gtkmm/window.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

using namespace TavSession;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// The curve colours of the phases A, B, C and N, as the user sees them.
constexpr Rgb PhaseA{0xFF, 0xEA, 0x00};
constexpr Rgb PhaseB{0x43, 0xA0, 0x47};
constexpr Rgb PhaseC{0xE5, 0x39, 0x35};
constexpr Rgb Neutral{0x60, 0x7D, 0x8B};
// Enough pixels for a curve across the plot, far more than anti-aliased
// edges of other colours could make.
constexpr int CurvePixels = 150;

const std::string Demo = std::string(TAVNA_SAMPLES_DIR) + "/demo_substation.pcap";

HostRun hostOn(std::vector<std::string> files) {
    return {TAVNA_EXE, TAVNA_RUN_DIR, std::move(files)};
}

// About a gigabyte: 8 merging units at 4000 frames/s for 200 s. Written once
// per run, since it takes a while.
const std::string& largeCapture() {
    static const std::string path = [] {
        const std::string p = TavTest::tempDir() + "/substation_200s.pcap";
        TavTest::runGenerator({p, "--sv", "8", "--duration", "200"});
        TavTest::flushToDisk(p);
        return p;
    }();
    return path;
}

std::string logText() {
    std::ifstream in(TavLog::Log::filePath());
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

long statusKb(const std::string& field) {
    std::ifstream in("/proc/self/status");
    for (std::string line; std::getline(in, line);)
        if (line.rfind(field + ":", 0) == 0)
            return std::stol(line.substr(field.size() + 1));
    return 0;
}

class Session : public testing::Test {
protected:
    void SetUp() override {
        TavLog::Log::setFilePath(TavTest::tempDir() + "/" +
                                 testing::UnitTest::GetInstance()->current_test_info()->name() +
                                 ".log");
    }
};

TEST_F(Session, OpenPickTickZoomRemoveSwitchCancelAndClose) {
    const std::string bay3 = TavTest::tempDir() + "/bay3.pcap";
    TavTest::runGenerator({bay3, "--sv", "1", "--goose", "1"});
    const std::string& large = largeCapture();

    const int exitCode = runHostSession(hostOn({Demo}), [&] {
        Person user;

        // The capture named on the command line.
        // The file's row shows before its streams do: both come from the load.
        user.waitForLoad("demo_substation.pcap");
        waitFor("the demo's streams", [&] { return user.streams().size() == 4; });
        EXPECT_THAT(user.streams(), ElementsAre("01:0c:cd:04:00:00 Bay1MU01 | 4.0K",
                                                "01:0c:cd:04:00:01 Bay2MU01 | 4.0K",
                                                "01:0c:cd:01:00:00 BAY1PROTTrip | 17",
                                                "01:0c:cd:01:00:01 BAY1CTRLPosition | 17"));
        EXPECT_TRUE(user.sees("SV (2)") && user.sees("GOOSE (2)"));
        EXPECT_THAT(user.description(), IsEmpty());

        // A second one through the menu's file chooser.
        user.openThroughMenu(bay3);
        user.waitForLoad("bay3.pcap");
        waitFor("six streams", [&] { return user.streams().size() == 6; });
        EXPECT_TRUE(user.sees("demo_substation.pcap"));
        EXPECT_THAT(user.streams(), Contains("01:0c:cd:04:00:00 TavnaSV00 | 4.0K"));
        EXPECT_THAT(user.streams(), Contains("01:0c:cd:01:00:00 TavnaGOOSE00 | 9"));
        user.screenshot("opened");

        // Picking a stream shows its description and opens its channels.
        EXPECT_THAT(user.channels(), IsEmpty());
        user.click("01:0c:cd:04:00:00 Bay1MU01 | 4.0K");
        waitFor("the channels of Bay1MU01", [&] { return user.channels().size() == 8; });
        const auto description = user.description();
        for (const char* item :
             {"Сетевые параметры", "01:0c:cd:04:00:00", "02:00:00:00:01:00", "10",
              "IEC61850 Sampled Values", "Bay1MU01", "0x4000", "нет", "4000"})
            EXPECT_THAT(description, Contains(item));
        const auto channels = user.channels();
        EXPECT_THAT(channels[0], HasSubstr("Ia"));
        EXPECT_THAT(channels[1], HasSubstr("Ib"));

        // Two ticked channels: their colours appear in the plot, and only then.
        EXPECT_LT(user.pixelsInPlot(PhaseA), CurvePixels);
        EXPECT_LT(user.pixelsInPlot(PhaseB), CurvePixels);
        user.tick(channels[0]);
        user.tick(channels[1]);
        waitFor("both curves in the plot", [&] {
            return user.pixelsInPlot(PhaseA) >= CurvePixels &&
                   user.pixelsInPlot(PhaseB) >= CurvePixels;
        });
        EXPECT_LT(user.pixelsInPlot(PhaseC), CurvePixels);
        user.screenshot("two-channels");

        // The first 100 ms show; the wheel zooms time around the pointer, a
        // drag pans, a double click shows the whole capture.
        const auto whole = user.timeWindow();
        EXPECT_EQ(whole, std::make_pair(0.0, 0.1));
        const double wholeWidth = whole.second - whole.first;
        const Rect plot = user.plot();
        const Point middle = plot.centre();
        user.hands.wheel(middle, 3);
        waitFor("the zoom", [&] { return user.timeWindow() != whole; });
        const auto zoomed = user.timeWindow();
        const double zoomedWidth = zoomed.second - zoomed.first;
        EXPECT_NEAR(zoomedWidth / wholeWidth, 0.8 * 0.8 * 0.8, 0.01);
        EXPECT_NEAR(zoomed.first + zoomedWidth / 2, whole.first + wholeWidth / 2,
                    wholeWidth * 0.02);
        EXPECT_GE(user.pixelsInPlot(PhaseA), CurvePixels);
        user.screenshot("zoomed");

        user.hands.drag(middle, {middle.x - plot.width / 4, middle.y});
        waitFor("the pan", [&] { return user.timeWindow() != zoomed; });
        const auto panned = user.timeWindow();
        EXPECT_NEAR(panned.second - panned.first, zoomedWidth, 1e-6);
        EXPECT_NEAR(panned.first - zoomed.first, zoomedWidth / 4, zoomedWidth * 0.03);

        // The demo lasts a second, its last frames 250 µs apart.
        user.hands.doubleClick(middle);
        waitFor("the whole second of the demo", [&] {
            const auto [from, to] = user.timeWindow();
            return from == 0.0 && std::abs(to - 0.99975) < 1e-4;
        });

        // Removing a file takes its streams with it.
        user.removeFile("bay3.pcap");
        waitFor("bay3.pcap to go", [&] { return !user.sees("bay3.pcap"); });
        waitFor("the demo's streams alone", [&] { return user.streams().size() == 4; });
        EXPECT_TRUE(user.sees("demo_substation.pcap"));

        // Ethernet mode has no file list and starts empty; back in PCAP mode
        // the list is there again, empty.
        user.switchMode();
        waitFor("Ethernet mode", [&] { return user.sees("ETHERNET"); });
        EXPECT_FALSE(user.sees("Файлы"));
        EXPECT_THAT(user.streams(), IsEmpty());
        user.screenshot("ethernet");
        user.switchMode();
        waitFor("PCAP mode", [&] { return user.sees("PCAP") && user.sees("Файлы"); });
        EXPECT_FALSE(user.sees("demo_substation.pcap"));
        EXPECT_THAT(user.streams(), IsEmpty());

        // A long load, cancelled from the status bar: nothing of it stays.
        user.openThroughMenu(large);
        waitFor("the cancel button", [&] { return user.cancelButtonShows(); });
        user.cancelLoad();
        waitFor("the load to stop", [&] { return !user.loading(); });
        EXPECT_FALSE(user.sees("substation_200s.pcap"));
        EXPECT_THAT(user.streams(), IsEmpty());

        user.closeMainWindow();
        waitUntil("the main window to close",
                  [] { return largestWindow() == nullptr || largestWindow()->get_width() < 500; });
    });
    EXPECT_EQ(exitCode, 0);
    const std::string log = logText();
    EXPECT_THAT(log, HasSubstr("Поток парсинга завершен"));
    EXPECT_THAT(log, HasSubstr("Модуль закрыт"));
}

// The main loop of a window that answers stays within this of its timer even
// while a gigabyte loads; beyond it the window visibly hangs. The target, 100
// ms, is measured by the system benchmark: a timed limit that tight would
// fail on a loaded machine without any fault.
constexpr auto HangLimit = 500ms;

TEST_F(Session, AGigabyteLoadsWithoutStallingTheWindow) {
    const std::string& large = largeCapture();
    std::unique_ptr<MainLoopProbe> probe;
    std::chrono::microseconds worstLateness{0};
    long ticks = 0, anonBeforeKb = 0, anonAfterKb = 0;

    runHostSession(hostOn({}), [&] {
        Person user;
        waitFor("the main window", [&] { return user.sees("Список SV и GOOSE"); });
        anonBeforeKb = statusKb("RssAnon");
        // The load starts as the chooser closes; building the chooser is not
        // part of it.
        user.openThroughMenu(large);
        onUi([&] { probe = std::make_unique<MainLoopProbe>(10ms); });
        waitFor("the progress bar", [&] { return user.loading(); });
        user.screenshot("loading");
        user.waitForLoad("substation_200s.pcap", 120s);
        waitFor("eight streams", [&] { return user.streams().size() == 8; });
        onUi([&] {
            worstLateness = probe->worstLateness();
            ticks = probe->ticks();
            probe.reset();
        });
        anonAfterKb = statusKb("RssAnon");

        // All eight channels of one merging unit: four colours of curves.
        user.click(user.streams().front());
        waitFor("the channels", [&] { return user.channels().size() == 8; });
        for (const auto& channel : user.channels())
            user.tick(channel);
        waitFor("curves of all four phases", [&] {
            for (Rgb colour : {PhaseA, PhaseB, PhaseC, Neutral})
                if (user.pixelsInPlot(colour) < CurvePixels)
                    return false;
            return true;
        });
        user.screenshot("eight-channels");
        user.closeMainWindow();
    });

    std::cout << "main loop: worst lateness " << worstLateness.count() / 1000.0 << " ms over "
              << ticks << " ticks of 10 ms; anonymous memory " << anonBeforeKb / 1024
              << " MB before, " << anonAfterKb / 1024 << " MB after loading "
              << std::filesystem::file_size(large) / (1024 * 1024) << " MB" << std::endl;
    RecordProperty("worst_lateness_us", static_cast<int>(worstLateness.count()));
    RecordProperty("anon_after_kb", static_cast<int>(anonAfterKb));
    EXPECT_GT(ticks, 10);
    EXPECT_LT(worstLateness, HangLimit);
}

} // namespace
