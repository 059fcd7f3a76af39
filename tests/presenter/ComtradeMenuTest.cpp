// "Файл" → "Экспорт в COMTRADE…" through the real module: real captures, the
// real parse worker, the real stream list and oscillograph, the export on its
// worker, the host's dialogs answered as a person would.
#include "model/TavNaModel.h"
#include "presenter/ComtradeExportPresenter.h"
#include "presenter/OscillographPresenter.h"
#include "presenter/PackageListPresenter.h"
#include "presenter/TavNaMenuPresenter.h"
#include "presenter/TavNaPresenter.h"
#include "presenter/TavNaStatusbarPresenter.h"
#include "tests/comtrade/RecordReader.h"
#include "tests/platform/view/DialogAnswer.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"
#include "view/ExportProgressView.h"
#include "view/StreamChannelView.h"
#include "view/StreamView.h"
#include "view/TavNaMenuView.h"
#include "view/TavNaStatusbarView.h"

#include <gtest/gtest.h>
#include <gtkmm/filechooserdialog.h>
#include <gtkmm/messagedialog.h>

#include <filesystem>

namespace {

using namespace TavNA;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

struct Shown {
    std::string text, detail;
};

class ComtradeMenu : public ::testing::Test {
protected:
    ComtradeMenu() {
        shell->open(nullptr);
        // Every message box is answered and kept; a chooser is counted, and
        // answered with `target` once its folder shows.
        boxes = TavTest::answerDialogs<Gtk::MessageDialog>(
            [this](Gtk::MessageDialog& box) -> std::optional<int> {
                messages.push_back(
                    {box.property_text().get_value(), box.property_secondary_text().get_value()});
                return Gtk::RESPONSE_OK;
            },
            true);
        choosers = TavTest::answerDialogs<Gtk::FileChooserDialog>(
            [this](Gtk::FileChooserDialog& d) -> std::optional<int> {
                if (filterName.empty()) {
                    filterName = d.get_filter()->get_name();
                    d.set_current_folder(dir);
                    d.set_current_name("record.cfg");
                }
                if (d.get_filename() != dir + "/record.cfg")
                    return std::nullopt;
                return Gtk::RESPONSE_ACCEPT;
            },
            true);
    }
    ~ComtradeMenu() override {
        boxes.disconnect();
        choosers.disconnect();
    }

    TavNaMenuView& menu() {
        return dynamic_cast<TavNaMenuView&>(*shell->getMenuPresenter().getView());
    }

    void load(const std::string& path, std::size_t svStreams) {
        shell->getModel().parseFile(path);
        ASSERT_TRUE(TavTest::pumpUntil(
            [&] { return shell->getPackageListPresenter().getSvStreams().size() == svStreams; },
            60s));
        TavTest::pumpPending();
    }

    template <typename Streams> void tick(const Streams& streams, std::size_t channel) {
        auto& stream = *streams.at(0);
        stream.getViewObj()->nameButton().clicked();
        stream.getChannelsPresenter()
            .getEntries()
            .at(channel)
            ->getViewObj()
            .checkButton()
            .set_active(true);
    }

    void showWindow(double from, double to) {
        shell->getOscillographPresenter().getViewObj().setSeriesRange(from, to);
        TavTest::pumpPending();
    }

    // Chooses the item and waits for the message that ends it.
    void exportAndWait() {
        const std::size_t before = messages.size();
        menu().exportItem().activate();
        ASSERT_TRUE(TavTest::pumpUntil([&] { return messages.size() > before; }, 60s));
    }

    std::unique_ptr<TavNaPresenter> shell = std::make_unique<TavNaPresenter>();
    std::string dir = [] {
        const auto d = TavTest::tempDir() + "/menu_" +
                       ::testing::UnitTest::GetInstance()->current_test_info()->name();
        fs::create_directories(d);
        return d;
    }();
    std::vector<Shown> messages;
    std::string filterName;
    sigc::connection boxes, choosers;
};

TEST_F(ComtradeMenu, ExportsTheTickedChannelsOverTheVisibleWindow) {
    EXPECT_EQ(menu().exportItem().get_label(), "Экспорт в COMTRADE…");
    load(TavTest::generated("menu_mixed", {"--sv", "1", "--asdus", "2", "--duration", "0.5",
                                           "--goose", "1", "--change", "0.1"}),
         1);
    tick(shell->getPackageListPresenter().getSvStreams(), 0);
    tick(shell->getPackageListPresenter().getSvStreams(), 4);
    tick(shell->getPackageListPresenter().getGooseStreams(), 0);
    showWindow(0.05, 0.15);
    exportAndWait();

    EXPECT_EQ(filterName, "COMTRADE (*.cfg)");
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].text, "Файлы COMTRADE записаны.");
    EXPECT_NE(messages[0].detail.find(dir + "/record.cfg\n" + dir + "/record.dat"),
              std::string::npos)
        << messages[0].detail;
    const auto r = TavTest::readRecord(dir + "/record");
    EXPECT_EQ(r.station, "menu_mixed");
    ASSERT_EQ(r.analog.size(), 2u);
    EXPECT_EQ(r.analog[0].id, "Ia | TavnaSV00");
    EXPECT_EQ(r.analog[1].id, "Ua | TavnaSV00");
    EXPECT_EQ(r.digitalIds, std::vector<std::string>{"1 | TavnaGOOSE00"});
    // 0.05 s to 0.15 s at 4000 samples a second, two to a frame, both ends in.
    EXPECT_NEAR(static_cast<double>(r.rows.size()), 402, 2);
    EXPECT_EQ(r.start.substr(0, 22), "14/11/2023,22:13:20.04");
    // The breaker's state changes at 0.1 s, within the window.
    EXPECT_EQ(r.rows.front().digital[0], 0);
    EXPECT_EQ(r.rows.back().digital[0], 1);
}

TEST_F(ComtradeMenu, SaysWhyWhenNothingIsTickedAndDoesNothingOnTheWire) {
    load(TavTest::generated("menu_small", {"--sv", "1", "--duration", "0.05"}), 1);
    exportAndWait();
    EXPECT_TRUE(filterName.empty()); // no chooser before a channel is ticked
    EXPECT_EQ(messages.at(0).text,
              "Не выбран ни один канал: отметьте каналы SV или GOOSE в списке потоков.");

    dynamic_cast<TavNaStatusbarView&>(*shell->getStatusbarPresenter().getView())
        .modeSwitch()
        .set_active(true);
    menu().exportItem().activate();
    TavTest::pumpFor(200ms);
    EXPECT_EQ(messages.size(), 1u);
    EXPECT_TRUE(filterName.empty());
}

TEST_F(ComtradeMenu, CancellingLeavesNoFile) {
    load(TavTest::generated("menu_long", {"--sv", "1", "--duration", "30"}), 1);
    tick(shell->getPackageListPresenter().getSvStreams(), 0);
    showWindow(0, 30);
    auto& progress = shell->getMenuPresenter().getExportPresenter().getProgressView();
    // The first news of progress is the person's cue to cancel.
    progress.progressBar().property_fraction().signal_changed().connect([&] {
        if (progress.get_visible())
            progress.cancelButton().clicked();
    });
    exportAndWait();
    EXPECT_EQ(messages.at(0).text, "Экспорт отменён, файлы не записаны.");
    EXPECT_FALSE(progress.get_visible());
    EXPECT_TRUE(fs::is_empty(dir));
}

} // namespace
