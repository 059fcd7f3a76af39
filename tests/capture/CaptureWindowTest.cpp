// Live capture through the real window: the status bar's chooser and button,
// the "Захват" menu, and the dialogs.
#include "model/TavNaModel.h"
#include "presenter/OscillographPresenter.h"
#include "presenter/PackageListPresenter.h"
#include "presenter/TavNaMenuPresenter.h"
#include "presenter/TavNaPresenter.h"
#include "presenter/TavNaStatusbarPresenter.h"
#include "tests/capture/VethPair.h"
#include "tests/platform/view/DialogAnswer.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"
#include "view/OscillographView.h"
#include "view/TavNaMenuView.h"
#include "view/TavNaStatusbarView.h"

#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <gtkmm/filechooserdialog.h>
#include <thread>

namespace {

using namespace TavNA;
using namespace std::chrono_literals;
using TavCaptureTest::streamCounts;

class CaptureWindow : public ::testing::Test {
protected:
    void SetUp() override {
        if (!net.skipped().empty())
            GTEST_SKIP() << net.skipped();
        shell = std::make_unique<TavNaPresenter>();
        shell->open(nullptr);
        bar().modeSwitch().set_active(true);
        TavTest::pumpPending();
    }
    TavNaStatusbarView& bar() {
        return dynamic_cast<TavNaStatusbarView&>(*shell->getStatusbarPresenter().getView());
    }
    TavNaMenuView& menu() {
        return dynamic_cast<TavNaMenuView&>(*shell->getMenuPresenter().getView());
    }
    TavNaModel& model() { return shell->getModel(); }
    bool idle() { return !model().getLoad().isRunning(); }
    void startOnTheVeth() {
        CaptureBar& capture = bar().captureBar();
        ASSERT_TRUE(capture.get_visible());
        capture.chooser().set_active_id(net.listening());
        ASSERT_EQ(capture.chosen(), net.listening());
        TavTest::queueClick(capture.startStopButton());
        ASSERT_TRUE(TavTest::pumpUntil([&] { return model().isCapturing(); }, 5s));
    }

    TavCaptureTest::VethPair net;
    std::unique_ptr<TavNaPresenter> shell;
    TavTest::MessageBoxes boxes;
};

TEST_F(CaptureWindow, CapturedStreamsAreListedCountedKeptAndSaved) {
    const std::string sent = TavTest::generated(
        "window", {"--format", "pcapng-ns", "--sv", "2", "--goose", "1", "--duration", "1.5"});
    const auto expected = streamCounts(sent);
    startOnTheVeth();
    EXPECT_EQ(bar().captureBar().startStopButton().get_label(), "Остановить захват");

    std::atomic<bool> allSent{false};
    std::thread sender([&] {
        net.replay(sent, false);
        allSent = true;
    });
    const bool listed = TavTest::pumpUntil(
        [&] { return model().getPackageListModel().getSvProto().getGroups().size() == 2; }, 5s);
    const bool whileSending = !allSent.load();
    sender.join();
    ASSERT_TRUE(listed);
    EXPECT_TRUE(whileSending);
    TavTest::pumpFor(400ms);
    EXPECT_NE(bar().captureBar().countsLabel().get_text().find("Кадров: "), std::string::npos);
    EXPECT_EQ(bar().captureBar().lostLabel().get_text(), "Потеряно: 0");

    menu().stopCaptureItem().activate();
    EXPECT_FALSE(model().isCapturing());
    ASSERT_TRUE(TavTest::pumpUntil(
        [&] { return idle() && streamCounts(model().getDb()) == expected; }, 5s));
    TavTest::pumpFor(300ms);
    EXPECT_EQ(bar().captureBar().startStopButton().get_label(), "Начать захват");

    const std::string dir = TavTest::tempDir();
    TavTest::answerNextDialog<Gtk::FileChooserDialog>(
        [&](Gtk::FileChooserDialog& d) -> std::optional<int> {
            if (d.get_filename() != dir + "/saved-live.pcapng") {
                d.set_current_folder(dir);
                d.set_current_name("saved-live.pcapng");
                return std::nullopt;
            }
            return Gtk::RESPONSE_ACCEPT;
        });
    menu().saveCaptureItem().activate();
    TavTest::pumpPending();
    EXPECT_TRUE(boxes.texts.empty()) << boxes.texts.front();

    // The switch to PCAP drops the capture and its segments.
    const auto segments =
        std::filesystem::path(model().getDb().svProto.svs.begin()->files.begin()->path);
    bar().modeSwitch().set_active(false);
    TavTest::pumpPending();
    EXPECT_FALSE(bar().captureBar().get_visible());
    EXPECT_FALSE(model().hasCapture());
    EXPECT_FALSE(std::filesystem::exists(segments.parent_path()));
    shell->openFiles({dir + "/saved-live.pcapng"});
    ASSERT_TRUE(TavTest::pumpUntil(
        [&] { return idle() && model().getFileManagerModel().size() == 1; }, 10s));
    EXPECT_EQ(streamCounts(model().getDb()), expected);
}

// Each batch of frames rebuilds the stream tree: a tick survives it, and the
// plot follows the newest frames until the user moves the window away.
TEST_F(CaptureWindow, ATickedChannelStaysDrawnAndThePlotFollowsUntilMovedAway) {
    const std::string sent =
        TavTest::generated("follow", {"--format", "pcapng-ns", "--sv", "1", "--duration", "4"});
    startOnTheVeth();
    std::thread sender([&] { net.replay(sent, false); });
    // Each rebuild makes a new tree: it is looked up every time.
    auto svGroups = [&]() -> auto& {
        return model().getPackageListModel().getSvProto().getGroups();
    };
    auto firstChannel = [&]() -> SvChannel* {
        const auto& channels = svGroups().getItems()[0]->getChannels().getItems();
        return channels.empty() ? nullptr : channels[0].get();
    };
    auto batches = [&](unsigned count) {
        const auto from = model().getLoad().number();
        return TavTest::pumpUntil(
            [&] { return idle() && model().getLoad().number() >= from + count; }, 5s);
    };
    auto& plot = shell->getOscillographPresenter().getViewObj();
    double from = 0.0;
    double to = 0.0;

    const bool listed = TavTest::pumpUntil([&] { return idle() && svGroups().size() == 1; }, 5s);
    // Picked as a click on its name does, which makes its channels.
    if (listed)
        shell->getPackageListPresenter().getSvStreams()[0]->getViewObj()->select();
    const bool channelsMade = listed && firstChannel() != nullptr;
    if (channelsMade)
        firstChannel()->setSelected(true);
    const bool followed = channelsMade && batches(3);
    plot.getSeriesRange(from, to);
    const double duration = model().getOscillographModel().duration;
    const bool stillTicked = followed && firstChannel() && firstChannel()->isSelected();
    const bool drawn = plot.isActive();

    plot.setSeriesRange(0.0, 0.1);
    const bool held = batches(2);
    double heldFrom = 0.0;
    double heldTo = 0.0;
    plot.getSeriesRange(heldFrom, heldTo);
    sender.join();

    ASSERT_TRUE(followed);
    EXPECT_TRUE(stillTicked);
    EXPECT_TRUE(drawn);
    EXPECT_GT(duration, 1.0);
    EXPECT_NEAR(to, duration, 1e-3);
    EXPECT_NEAR(from, std::max(0.0, duration - 2.0), 1e-3);
    ASSERT_TRUE(held);
    EXPECT_NEAR(heldFrom, 0.0, 1e-6);
    EXPECT_NEAR(heldTo, 0.1, 1e-6);
}

TEST_F(CaptureWindow, AnInterfaceThatDisappearsIsToldAndTheButtonComesBack) {
    startOnTheVeth();
    ASSERT_EQ(net.ip("link del " + net.listening()), 0);
    ASSERT_TRUE(TavTest::pumpUntil([&] { return !boxes.texts.empty(); }, 5s));
    EXPECT_EQ(boxes.texts.front(), "Захват остановлен: интерфейс больше не отвечает.");
    EXPECT_FALSE(model().isCapturing());
    EXPECT_EQ(bar().captureBar().startStopButton().get_label(), "Начать захват");
}

} // namespace
