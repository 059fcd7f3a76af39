// The module's root presenter with its real model, real captures, the real
// parse worker and real widgets on a real main loop.
#include "model/FileManagerModel.h"
#include "model/TavNaModel.h"
#include "platform/common/Language.h"
#include "platform/common/Log.h"
#include "platform/view/PanelManagerPresenter.h"
#include "presenter/FileManagerPresenter.h"
#include "presenter/FileRecordPresenter.h"
#include "presenter/TavNaMenuPresenter.h"
#include "presenter/TavNaPresenter.h"
#include "presenter/TavNaStatusbarPresenter.h"
#include "tests/platform/view/DialogAnswer.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"
#include "view/FileManagerView.h"
#include "view/FileRecordView.h"
#include "view/TavNaMenuView.h"
#include "view/TavNaStatusbarView.h"
#include "view/TavNaView.h"

#include <gtest/gtest.h>
#include <gtkmm/filechooserdialog.h>
#include <gtkmm/messagedialog.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace TavNA;
using namespace std::chrono_literals;

const std::string goose3 = "goose_3pub_interlocking_vlan0_451frames.pcap";
const std::string sv8 = "sv_gen_8streams_4000loops_novlan.pcap";
const std::string goose8 = "goose_ge-f650_8frames.pcap";

// Long enough to load that closing right after the start lands mid-parse.
std::string largeCapture() {
    return TavTest::generated("large", {"--sv", "8", "--duration", "20"});
}

class ShellTest : public ::testing::Test {
protected:
    ShellTest() {
        shell->signalOpened.connect([this] { ++opened; });
        shell->open(nullptr);
    }

    std::vector<std::string> panelTitles() {
        std::vector<std::string> titles;
        for (Tav::IPanelView* panel : shell->getPanelManager().panels())
            titles.push_back(panel->title());
        return titles;
    }
    TavNaStatusbarView& bar() {
        return dynamic_cast<TavNaStatusbarView&>(*shell->getStatusbarPresenter().getView());
    }
    TavNaModel& model() { return shell->getModel(); }
    size_t rows() { return shell->getFileManagerPresenter()->rows().size(); }

    // Opens one file and waits until the bar has gone again.
    void load(const std::string& path) {
        model().parseFile(path);
        ASSERT_TRUE(TavTest::pumpUntil([&] { return !bar().progressBar().get_visible(); }, 60s));
    }

    std::unique_ptr<TavNaPresenter> shell = std::make_unique<TavNaPresenter>();
    int opened = 0;
};

TEST_F(ShellTest, OpensItsWindowWithMenuPanelsAndStatusBar) {
    EXPECT_EQ(opened, 1);
    TavNaView& window = shell->getMainView();
    EXPECT_TRUE(window.get_visible());
    EXPECT_EQ(window.get_title(), "Сетевой Анализатор");
    EXPECT_EQ(
        window.headerBox().get_children(),
        std::vector<Gtk::Widget*>{dynamic_cast<Gtk::Widget*>(shell->getMenuPresenter().getView())});
    EXPECT_EQ(window.bodyBox().get_children(), std::vector<Gtk::Widget*>{dynamic_cast<Gtk::Widget*>(
                                                   shell->getPanelManager().getView())});
    EXPECT_EQ(window.footerBox().get_children(), std::vector<Gtk::Widget*>{&bar()});
    EXPECT_EQ(panelTitles(),
              (std::vector<std::string>{"Список SV и GOOSE", "Описание", "Диагностика",
                                        "Осциллограмма", "Измерения", "Файлы"}));
    EXPECT_EQ(bar().modeLabel().get_text(), "PCAP");

    // The working folder holds the icon under this name.
    EXPECT_EQ(shell->descriptor()->iconPath(), "Icons/Shell/NetworkAnalyzer_network_analyzer.png");

    int closes = 0;
    shell->signalClosed.connect([&] { ++closes; });
    window.close();
    ASSERT_TRUE(TavTest::pumpUntil([&] { return closes == 1; }));
    EXPECT_TRUE(window.get_visible());
}

TEST_F(ShellTest, OpenAsksForACaptureOnlyInPcapMode) {
    auto& menu = dynamic_cast<TavNaMenuView&>(*shell->getMenuPresenter().getView());
    const std::string chosen = TavTest::sharedCapture(goose8);
    int choosers = 0;
    std::string title;
    TavTest::answerNextDialog<Gtk::FileChooserDialog>(
        [&](Gtk::FileChooserDialog& d) -> std::optional<int> {
            if (choosers == 0) {
                ++choosers;
                title = d.get_title();
                d.set_filename(chosen);
            }
            if (d.get_filename() != chosen)
                return std::nullopt; // its folder is still loading
            return Gtk::RESPONSE_ACCEPT;
        });
    menu.openItem().activate();
    EXPECT_EQ(choosers, 1);
    EXPECT_EQ(title, "открыть PCAP файл");
    ASSERT_TRUE(TavTest::pumpUntil([&] { return rows() == 1; }, 60s));

    bar().modeSwitch().set_active(true);
    bool asked = false;
    TavTest::answerNextDialog<Gtk::FileChooserDialog>(
        [&](Gtk::FileChooserDialog&) -> std::optional<int> {
            asked = true;
            return Gtk::RESPONSE_CANCEL;
        });
    menu.openItem().activate();
    TavTest::pumpFor(200ms);
    EXPECT_FALSE(asked);
    EXPECT_FALSE(bar().progressBar().get_visible());
}

TEST_F(ShellTest, StatusBarShowsTheFileAndItsProgressWhileItLoads) {
    const std::string path = TavTest::sharedCapture(sv8);
    std::vector<double> fractions;
    bar().progressBar().property_fraction().signal_changed().connect(
        [&] { fractions.push_back(bar().progressBar().get_fraction()); });

    model().parseFile(path);
    EXPECT_TRUE(bar().progressBar().get_visible());
    EXPECT_TRUE(bar().cancelLoadButton().get_visible());
    EXPECT_EQ(bar().progressBar().get_text(), sv8);
    ASSERT_TRUE(TavTest::pumpUntil([&] { return !bar().progressBar().get_visible(); }, 60s));

    EXPECT_FALSE(bar().cancelLoadButton().get_visible());
    EXPECT_EQ(bar().progressBar().get_text(), "");
    ASSERT_FALSE(fractions.empty());
    EXPECT_DOUBLE_EQ(fractions.back(), 1.0);
    EXPECT_TRUE(model().getFileManagerModel().isExists(path));
}

TEST_F(ShellTest, FileListHasARowPerFileAndItsButtonRemovesTheFile) {
    const std::string first = TavTest::sharedCapture(goose3);
    // Within the time gap of the first capture, which ends at 1216909245.47 s.
    const std::string second =
        TavTest::generated("nearby", {"--goose", "1", "--start", "1216909246", "--duration", "1"});
    shell->openFiles({first, second, first}); // one after another; the repeat is passed over
    ASSERT_TRUE(TavTest::pumpUntil([&] { return rows() == 2; }, 60s));
    TavTest::pumpFor(100ms);
    EXPECT_EQ(rows(), 2u);

    const auto& presenters = shell->getFileManagerPresenter()->rows();
    auto& firstRow = dynamic_cast<FileRecordView&>(*presenters[0]->getView());
    EXPECT_EQ(firstRow.nameButtonWidget().get_label(), goose3);
    auto& secondRow = dynamic_cast<FileRecordView&>(*presenters[1]->getView());
    EXPECT_EQ(secondRow.nameButtonWidget().get_label(), "nearby.pcap");

    firstRow.removeButtonWidget().clicked();
    EXPECT_FALSE(model().getFileManagerModel().isExists(first));
    EXPECT_TRUE(model().getFileManagerModel().isExists(second));
    ASSERT_TRUE(TavTest::pumpUntil([&] { return rows() == 1; }));
    auto& panel = dynamic_cast<FileManagerView&>(*shell->getFileManagerPresenter()->getView());
    EXPECT_EQ(panel.rows().get_child_at(0, 0), nullptr);
    EXPECT_NE(panel.rows().get_child_at(0, 1), nullptr);
}

// A reset drops what the stopped load posted; the bar must go idle all the same.
TEST_F(ShellTest, SwitchingModeDuringALoadLeavesTheBarIdleInBothModes) {
    auto idle = [this] {
        return !bar().progressBar().get_visible() && !bar().cancelLoadButton().get_visible() &&
               bar().progressBar().get_text().empty();
    };
    model().parseFile(largeCapture());
    ASSERT_TRUE(TavTest::pumpUntil([&] { return bar().progressBar().get_fraction() > 0.0; }, 60s));
    ASSERT_FALSE(idle());

    bar().modeSwitch().set_active(true);
    TavTest::pumpFor(300ms);
    EXPECT_EQ(bar().modeLabel().get_text(), "ETHERNET");
    EXPECT_TRUE(idle());

    bar().modeSwitch().set_active(false);
    TavTest::pumpFor(300ms);
    EXPECT_EQ(bar().modeLabel().get_text(), "PCAP");
    EXPECT_TRUE(idle());
    EXPECT_EQ(rows(), 0u);
}

// Rows follow the list's own add and remove signals, whoever changes the list.
TEST_F(ShellTest, FileListFollowsTheModelsAddAndRemoveSignals) {
    FileManagerModel& files = model().getFileManagerModel();
    files.add("/captures/a.pcap");
    files.add("/captures/b.pcap");
    files.add("/captures/a.pcap");
    ASSERT_TRUE(TavTest::pumpUntil([&] { return rows() == 3; }));
    const auto& presenters = shell->getFileManagerPresenter()->rows();
    EXPECT_EQ(presenters[0]->getModel(), files.getRecords()[0].get());
    EXPECT_EQ(presenters[2]->getModel(), files.getRecords()[2].get());

    // The later record of a repeated path goes by its identity, so that no
    // row is left holding it.
    files.remove(*files.getRecords()[2]);
    ASSERT_TRUE(TavTest::pumpUntil([&] { return rows() == 2; }));
    EXPECT_EQ(presenters[0]->getModel(), files.getRecords()[0].get());
    EXPECT_EQ(presenters[1]->getPath(), "/captures/b.pcap");

    files.remove("/captures/none.pcap");
    TavTest::pumpFor(100ms);
    EXPECT_EQ(rows(), 2u);

    // A click on a row whose record is gone removes nothing else.
    auto& stale = dynamic_cast<FileRecordView&>(*presenters[0]->getView());
    files.remove("/captures/a.pcap");
    stale.removeButtonWidget().clicked();
    ASSERT_TRUE(TavTest::pumpUntil([&] { return rows() == 1; }));
    EXPECT_TRUE(files.isExists("/captures/b.pcap"));
}

TEST_F(ShellTest, EachTimeGapRefusalShowsOneDialogWithItsText) {
    TavTest::MessageBoxes boxes;
    // The range of an open capture recorded around 1 s after the epoch.
    OscillographModel& range = model().getOscillographModel();
    range.start = 1.0;
    range.end = 2.0;
    range.duration = 1.0;
    const std::string path = TavTest::sharedCapture(goose3);

    load(path);
    ASSERT_TRUE(TavTest::pumpUntil([&] { return !boxes.texts.empty(); }));
    TavTest::pumpFor(200ms);
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(boxes.texts[0], "У файла " + path +
                                  " разрыв с текущим временным диапазоном больше 60 сек. "
                                  "Если необходимо откройте файл отдельно.");
    EXPECT_FALSE(model().getFileManagerModel().isExists(path));
    EXPECT_EQ(rows(), 0u);

    // Refused, the file is not open, so trying again is refused again.
    load(path);
    ASSERT_TRUE(TavTest::pumpUntil([&] { return boxes.texts.size() == 2; }));
    EXPECT_EQ(boxes.texts[1], boxes.texts[0]);
}

TEST_F(ShellTest, AMessageForAPresenterThatIsGoneIsDropped) {
    TavTest::MessageBoxes boxes;
    shell->getModel().signalMessage.emit(0, "late");
    shell.reset();
    TavTest::pumpFor(200ms);
    EXPECT_TRUE(boxes.texts.empty());
}

TEST_F(ShellTest, ClosingDuringALoadWaitsForTheWorker) {
    const std::string log = TavTest::tempDir() + "/closing.log";
    TavLog::Log::setFilePath(log);
    model().parseFile(largeCapture());
    shell.reset();
    TavTest::pumpFor(100ms); // what the worker posted meanwhile is dropped
    TavLog::Log::setFilePath("");

    // Waiting, joined, ended: each there, in this order.
    const std::string text = TavTest::readFile(log);
    std::vector<std::size_t> at;
    for (const char* line : {"Ожидание завершения потока парсинга", "Поток парсинга завершен",
                             "Завершение работы Сетевого Анализатора"})
        at.push_back(text.find(line));
    EXPECT_NE(at.back(), std::string::npos) << text;
    EXPECT_TRUE(std::is_sorted(at.begin(), at.end())) << text;
}

// The document keeps its name in both languages; only its folder changes.
TEST(TavNaMenuPresenter, HelpDocumentFollowsTheInterfaceLanguage) {
    const int saved = lng::language;
    lng::language = 1;
    EXPECT_EQ(TavNaMenuPresenter::helpPath(), "Help/ru-RU/Главное окно программы.pdf");
    lng::language = 0;
    EXPECT_EQ(TavNaMenuPresenter::helpPath(), "Help/en-US/Главное окно программы.pdf");
    lng::language = saved;
}

} // namespace
