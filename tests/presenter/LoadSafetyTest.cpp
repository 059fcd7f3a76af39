// What the user can do while a file loads or goes: open another, remove one,
// click what is on screen. The module's root presenter with its real model,
// worker, captures and widgets on a real main loop.
#include "model/TavNaModel.h"
#include "presenter/FileManagerPresenter.h"
#include "presenter/FileRecordPresenter.h"
#include "presenter/OscillographPresenter.h"
#include "presenter/PackageListPresenter.h"
#include "presenter/TavNaMenuPresenter.h"
#include "presenter/TavNaPresenter.h"
#include "presenter/TavNaStatusbarPresenter.h"
#include "tests/platform/view/DialogAnswer.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"
#include "view/FileRecordView.h"
#include "view/TavNaMenuView.h"
#include "view/TavNaStatusbarView.h"

#include <gtest/gtest.h>
#include <gtkmm/filechooserdialog.h>
#include <gtkmm/messagedialog.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace TavNA;
using namespace std::chrono_literals;

class LoadSafety : public ::testing::Test {
protected:
    LoadSafety() { shell->open(nullptr); }

    TavNaModel& model() { return shell->getModel(); }
    TavNaStatusbarView& bar() {
        return dynamic_cast<TavNaStatusbarView&>(*shell->getStatusbarPresenter().getView());
    }
    bool sensitive(Tav::IView* panel) { return dynamic_cast<Gtk::Widget&>(*panel).is_sensitive(); }
    bool listSensitive() { return sensitive(shell->getPackageListPresenter().getView()); }
    bool filesSensitive() { return sensitive(shell->getFileManagerPresenter()->getView()); }
    // Whether the group is one of the stream tree's present groups.
    bool inTree(const IGroup* group) {
        auto& packages = model().getPackageListModel();
        for (const auto& g : packages.getSvProto().getGroups().getItems())
            if (g.get() == group)
                return true;
        for (const auto& g : packages.getGooseProto().getGroups().getItems())
            if (g.get() == group)
                return true;
        return false;
    }
    void loadAndSettle(const std::string& path) {
        model().parseFile(path);
        ASSERT_TRUE(TavTest::pumpUntil(
            [&] { return !bar().progressBar().get_visible() && listSensitive(); }, 60s));
    }

    std::unique_ptr<TavNaPresenter> shell = std::make_unique<TavNaPresenter>();
};

// The first file is opened, and the second through the menu while the first
// still loads: the second's load owns the bar and the lock until it ends.
TEST_F(LoadSafety, ASecondOpenDuringALoadKeepsItsBarAndLockUntilItEnds) {
    const std::string first = TavTest::generated("first", {"--sv", "8", "--duration", "60"});
    const std::string second = TavTest::generated("second", {"--sv", "8", "--duration", "20"});
    const std::string secondName = std::filesystem::path(second).filename().string();
    std::atomic<bool> firstFinished{false};
    std::atomic<bool> secondFinished{false};
    bool secondStarted = false;
    bool firstOverAtTheOpen = false;
    model().signalParseStarted.connect([&](const std::string& path) {
        if (path == second)
            secondStarted = true;
    });
    model().signalParseFinished.connect([&](const std::string& path) {
        (path == first ? firstFinished : secondFinished).store(true);
    });

    // The chooser is up before the first load starts; it is answered once
    // that load is under way, so the second opens in the middle of it.
    TavTest::answerNextDialog<Gtk::FileChooserDialog>(
        [&](Gtk::FileChooserDialog& d) -> std::optional<int> {
            if (d.get_filename() != second) {
                d.set_filename(second);
                return std::nullopt;
            }
            if (!model().getFileManagerModel().isExists(first) && !model().isParsing()) {
                model().parseFile(first);
                return std::nullopt;
            }
            if (bar().progressBar().get_fraction() <= 0.0)
                return std::nullopt;
            firstOverAtTheOpen = firstFinished.load();
            return Gtk::RESPONSE_ACCEPT;
        });
    std::vector<std::string> broken;
    auto check = [&] {
        if (!secondStarted || secondFinished.load())
            return;
        if (!bar().progressBar().get_visible())
            broken.push_back("progress bar hidden");
        if (!bar().cancelLoadButton().get_visible())
            broken.push_back("cancel button hidden");
        if (bar().progressBar().get_text() != secondName)
            broken.push_back("bar shows \"" + bar().progressBar().get_text() + "\"");
        if (listSensitive() || filesSensitive())
            broken.push_back("lists clickable");
    };
    sigc::connection probe = Glib::signal_idle().connect([&] {
        check();
        return true;
    });
    dynamic_cast<TavNaMenuView&>(*shell->getMenuPresenter().getView()).openItem().activate();
    ASSERT_TRUE(secondStarted);
    ASSERT_FALSE(firstOverAtTheOpen) << "the first load ended before the second was opened";
    ASSERT_TRUE(TavTest::pumpUntil(
        [&] { return secondFinished.load() && !bar().progressBar().get_visible(); }, 60s));
    probe.disconnect();

    EXPECT_TRUE(broken.empty()) << broken.size() << " times, first: " << broken.front();
    EXPECT_TRUE(TavTest::pumpUntil([&] { return listSensitive() && filesSensitive(); }));
    EXPECT_FALSE(model().getFileManagerModel().isExists(first));
    EXPECT_TRUE(model().getFileManagerModel().isExists(second));
    EXPECT_EQ(shell->getFileManagerPresenter()->rows().size(), 1u);
    EXPECT_EQ(shell->getPackageListPresenter().getSvStreams().size(), 8u);
}

// A click on a stream entry and one on a channel box are already waiting in
// the queue when the file they belong to is removed.
TEST_F(LoadSafety, ClicksQueuedBehindARemovalReachNothingFreed) {
    const std::string path = TavTest::generated("removed", {"--sv", "2", "--duration", "0.2"});
    loadAndSettle(path);
    auto& streams = shell->getPackageListPresenter().getSvStreams();
    ASSERT_EQ(streams.size(), 2u);
    streams[0]->getViewObj()->nameButton().clicked();
    TavTest::pumpPending();
    auto& box = streams[0]->getChannelsPresenter().getEntries().at(0)->getViewObj().checkButton();
    ASSERT_TRUE(box.get_mapped());

    TavTest::queueClick(streams[1]->getViewObj()->nameButton());
    TavTest::queueClick(box);
    auto& row =
        dynamic_cast<FileRecordView&>(*shell->getFileManagerPresenter()->rows().at(0)->getView());
    row.removeButtonWidget().clicked();
    TavTest::pumpFor(200ms);

    const IGroup* picked = model().getPackageListModel().getSelectedGroup();
    EXPECT_TRUE(picked == nullptr || inTree(picked));
    EXPECT_TRUE(shell->getOscillographPresenter().getSvSelection().empty());
    EXPECT_TRUE(shell->getPackageListPresenter().getSvStreams().empty());
    EXPECT_FALSE(model().getFileManagerModel().isExists(path));
}

// The same queued clicks on entries that stay: they do reach the stream.
TEST_F(LoadSafety, QueuedClicksOnLiveEntriesPickAndTick) {
    loadAndSettle(TavTest::generated("kept", {"--sv", "2", "--duration", "0.2"}));
    auto& streams = shell->getPackageListPresenter().getSvStreams();
    ASSERT_EQ(streams.size(), 2u);
    TavTest::queueClick(streams[1]->getViewObj()->nameButton());
    TavTest::pumpFor(100ms);
    EXPECT_EQ(model().getPackageListModel().getSelectedGroup(),
              static_cast<const IGroup*>(&streams[1]->getModel()));
    auto& box = streams[1]->getChannelsPresenter().getEntries().at(0)->getViewObj().checkButton();
    TavTest::queueClick(box);
    TavTest::pumpFor(100ms);
    EXPECT_EQ(shell->getOscillographPresenter().getSvSelection().size(), 1u);
}

} // namespace

namespace {

// Opens, removals, mode switches and closes of the window land at random
// moments of loads, as an impatient user's would; the window then shows
// exactly what the model holds, and nothing of an earlier load comes back.
TEST(LoadStorm, RandomMomentsOfALoadLeaveTheWindowMatchingTheModel) {
    const std::vector<std::string> captures = {
        TavTest::generated("storm-a", {"--sv", "8", "--duration", "10"}),
        TavTest::generated("storm-b", {"--sv", "2", "--goose", "3", "--duration", "5"}),
        TavTest::generated("storm-c", {"--goose", "2", "--duration", "5"})};
    TavTest::MessageBoxes boxes;
    std::mt19937 random(20261123);
    auto shell = std::make_unique<TavNaPresenter>();
    shell->open(nullptr);
    auto bar = [&]() -> TavNaStatusbarView& {
        return dynamic_cast<TavNaStatusbarView&>(*shell->getStatusbarPresenter().getView());
    };
    auto pick = [&] { return captures[random() % captures.size()]; };

    for (int round = 0; round < 40; ++round) {
        shell->getModel().parseFile(pick());
        TavTest::pumpFor(std::chrono::milliseconds(random() % 40));
        switch (random() % 5) {
        case 0:
            shell->getModel().parseFile(pick());
            break;
        case 1:
            bar().modeSwitch().set_active(true);
            TavTest::pumpPending();
            bar().modeSwitch().set_active(false);
            break;
        case 2:
            if (auto* files = shell->getFileManagerPresenter(); files && !files->rows().empty())
                TavTest::queueClick(dynamic_cast<FileRecordView&>(*files->rows()[0]->getView())
                                        .removeButtonWidget());
            break;
        case 3:
            bar().cancelLoadButton().clicked();
            break;
        default:
            shell = std::make_unique<TavNaPresenter>();
            shell->open(nullptr);
            break;
        }
        TavTest::pumpFor(std::chrono::milliseconds(random() % 40));
    }
    const std::string last = captures[0];
    shell->getModel().parseFile(last);
    auto* files = shell->getFileManagerPresenter();
    ASSERT_NE(files, nullptr);
    auto& list = dynamic_cast<Gtk::Widget&>(*shell->getPackageListPresenter().getView());
    ASSERT_TRUE(TavTest::pumpUntil(
        [&] {
            return !bar().progressBar().get_visible() && list.is_sensitive() &&
                   shell->getModel().getFileManagerModel().isExists(last);
        },
        60s));
    TavTest::pumpFor(100ms);

    std::vector<std::string> rows, listed;
    for (const auto& row : files->rows())
        rows.push_back(row->getPath());
    for (const auto& record : shell->getModel().getFileManagerModel().getRecords())
        listed.push_back(record->fileName);
    std::sort(rows.begin(), rows.end());
    std::sort(listed.begin(), listed.end());
    EXPECT_EQ(rows, listed);
    auto& packages = shell->getModel().getPackageListModel();
    EXPECT_EQ(shell->getPackageListPresenter().getSvStreams().size(),
              packages.getSvProto().getGroups().size());
    EXPECT_EQ(shell->getPackageListPresenter().getGooseStreams().size(),
              packages.getGooseProto().getGroups().size());
    EXPECT_GE(packages.getSvProto().getGroups().size(), 8u);
    EXPECT_TRUE(boxes.texts.empty()) << boxes.texts.front();
}

} // namespace
