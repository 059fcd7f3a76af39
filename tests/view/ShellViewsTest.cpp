// The module's own windows and bars as real widgets on a real main loop.
#include "tests/support/GuiTest.h"
#include "view/FileManagerView.h"
#include "view/FileRecordView.h"
#include "view/TavNaStatusbarView.h"
#include "view/TavNaView.h"

#include <gtest/gtest.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

#include <memory>
#include <vector>

namespace {

using namespace TavNA;
using namespace std::chrono_literals;

// A view that is no widget: containers must pass it over.
struct NotAWidget : Tav::IView {};

struct LabelView : Tav::IView, Gtk::Label {
    explicit LabelView(const std::string& text) : Gtk::Label(text) {}
};

std::vector<std::string> labelsIn(Gtk::Box& box) {
    std::vector<std::string> texts;
    for (Gtk::Widget* child : box.get_children())
        if (auto* label = dynamic_cast<Gtk::Label*>(child))
            texts.push_back(label->get_text());
    return texts;
}

TEST(TavNaView, StacksHeaderBodyAndFooterAndReplacesOnlyHeaderAndFooter) {
    TavNaView window;
    auto* main = dynamic_cast<Gtk::Box*>(window.get_child());
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(main->get_orientation(), Gtk::ORIENTATION_VERTICAL);
    const std::vector<Gtk::Widget*> areas = main->get_children();
    ASSERT_EQ(areas.size(), 3u);
    EXPECT_EQ(areas[0], &window.headerBox());
    EXPECT_EQ(areas[1], &window.bodyBox());
    EXPECT_EQ(areas[2], &window.footerBox());
    EXPECT_TRUE(window.bodyBox().get_vexpand());
    EXPECT_FALSE(window.headerBox().get_vexpand());
    EXPECT_TRUE(window.get_style_context()->has_class("Window"));

    LabelView menu1("menu 1"), menu2("menu 2"), panels1("panels 1"), panels2("panels 2");
    LabelView status1("status 1"), status2("status 2");
    NotAWidget nothing;
    window.addHeader(&menu1);
    window.addHeader(&menu2);
    window.addHeader(&nothing);
    window.addHeader(nullptr);
    window.addWidget(&panels1);
    window.addWidget(&panels2);
    window.addWidget(&nothing);
    window.addFooter(&status1);
    window.addFooter(&status2);

    EXPECT_EQ(labelsIn(window.headerBox()), std::vector<std::string>{"menu 2"});
    EXPECT_EQ(labelsIn(window.bodyBox()), (std::vector<std::string>{"panels 1", "panels 2"}));
    EXPECT_EQ(labelsIn(window.footerBox()), std::vector<std::string>{"status 2"});
    EXPECT_EQ(menu1.get_parent(), nullptr);
}

TEST(TavNaView, CloseRequestIsOnlyReportedTheWindowStays) {
    TavNaView window;
    int requests = 0;
    window.signalCloseRequest.connect([&] { ++requests; });
    window.show(nullptr, "Сетевой Анализатор");
    ASSERT_TRUE(TavTest::pumpUntil([&] { return window.get_mapped(); }));
    EXPECT_EQ(window.get_title(), "Сетевой Анализатор");

    window.close(); // what the window manager's close box sends
    ASSERT_TRUE(TavTest::pumpUntil([&] { return requests == 1; }));
    TavTest::pumpPending();
    EXPECT_TRUE(window.get_visible());
    EXPECT_TRUE(window.get_mapped());
}

class StatusbarViewTest : public ::testing::Test {
protected:
    StatusbarViewTest() {
        window.add(bar);
        window.show_all();
        bar.signalModeSwitched.connect([this](bool active) { switched.push_back(active); });
    }

    Gtk::Window window;
    TavNaStatusbarView bar;
    std::vector<bool> switched;
};

TEST_F(StatusbarViewTest, ShowingTheModeNeverReportsASwitch) {
    bar.setMode("ETHERNET");
    EXPECT_TRUE(bar.modeSwitch().get_active());
    EXPECT_EQ(bar.modeLabel().get_text(), "ETHERNET");
    bar.setMode("something else");
    EXPECT_TRUE(bar.modeSwitch().get_active());
    EXPECT_EQ(bar.modeLabel().get_text(), "something else");
    bar.setMode("PCAP");
    EXPECT_FALSE(bar.modeSwitch().get_active());
    TavTest::pumpPending();
    EXPECT_TRUE(switched.empty());

    // The user's own switching is reported, with the new state.
    bar.modeSwitch().set_active(true);
    bar.modeSwitch().set_active(false);
    EXPECT_EQ(switched, (std::vector<bool>{true, false}));
}

TEST_F(StatusbarViewTest, ProgressShowsBaseNameAndFractionUntilReset) {
    TavTest::pumpPending();
    EXPECT_FALSE(bar.progressBar().get_visible());
    EXPECT_FALSE(bar.cancelLoadButton().get_visible());
    EXPECT_EQ(bar.cancelLoadButton().get_tooltip_text(), "Отменить загрузку");
    EXPECT_TRUE(bar.get_style_context()->has_class("statusbar"));
    EXPECT_TRUE(bar.cancelLoadButton().get_style_context()->has_class("cancelLoadBtn"));
    auto* cross = dynamic_cast<Gtk::Image*>(bar.cancelLoadButton().get_image());
    ASSERT_NE(cross, nullptr);
    EXPECT_TRUE(cross->get_style_context()->has_class("cancelLoadImage"));

    bar.setFileName("/data/captures/bay 1.pcap");
    bar.updateProgress(0.37);
    bar.showProgress(true);
    bar.showCancelLoadButton(true);
    EXPECT_TRUE(bar.progressBar().get_visible());
    EXPECT_TRUE(bar.cancelLoadButton().get_visible());
    EXPECT_EQ(bar.progressBar().get_text(), "bay 1.pcap");
    EXPECT_DOUBLE_EQ(bar.progressBar().get_fraction(), 0.37);

    int cancels = 0;
    bar.signalCancelLoad.connect([&] { ++cancels; });
    bar.cancelLoadButton().clicked();
    EXPECT_EQ(cancels, 1);

    bar.reset();
    EXPECT_EQ(bar.progressBar().get_text(), "");
    EXPECT_DOUBLE_EQ(bar.progressBar().get_fraction(), 0.0);
}

Gtk::Widget* at(Gtk::Grid& grid, int column, int row) {
    return grid.get_child_at(column, row);
}

TEST(FileManagerView, RowsOnlyGrowAndARowLeavesWithItsRecordView) {
    Gtk::Window window;
    FileManagerView panel;
    window.add(panel);
    window.show_all();
    auto first = std::make_unique<FileRecordView>();
    auto second = std::make_unique<FileRecordView>();
    first->setFileName("/a/first.pcap");
    second->setFileName("/b/second.pcap");
    NotAWidget nothing;

    panel.setRowView(first->getNameView(), first->getRemoveButtonView());
    panel.setRowView(&nothing, second->getRemoveButtonView());
    panel.setRowView(second->getNameView(), nullptr);
    panel.setRowView(second->getNameView(), second->getRemoveButtonView());

    Gtk::Grid& grid = panel.rows();
    EXPECT_EQ(panel.rowCount(), 2u);
    EXPECT_EQ(at(grid, 0, 0), &first->nameButtonWidget());
    EXPECT_EQ(at(grid, 1, 0), &first->removeButtonWidget());
    EXPECT_EQ(at(grid, 0, 1), &second->nameButtonWidget());
    EXPECT_EQ(first->nameButtonWidget().get_label(), "first.pcap");
    EXPECT_EQ(first->nameButtonWidget().get_halign(), Gtk::ALIGN_START);

    first.reset();
    EXPECT_EQ(at(grid, 0, 0), nullptr);
    EXPECT_EQ(at(grid, 1, 0), nullptr);

    FileRecordView third;
    third.setFileName("third.pcap");
    panel.setRowView(third.getNameView(), third.getRemoveButtonView());
    EXPECT_EQ(at(grid, 0, 2), &third.nameButtonWidget());
    EXPECT_EQ(at(grid, 0, 0), nullptr);

    int removes = 0;
    third.signalRemoveClicked.connect([&] { ++removes; });
    third.removeButtonWidget().clicked();
    EXPECT_EQ(removes, 1);
}

} // namespace
