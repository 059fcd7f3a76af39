// The module's own windows and bars as real widgets: what the presenters' tests
// cannot reach, such as views that are no widgets and rows that outlive others.
#include "tests/support/GuiTest.h"
#include "view/FileManagerView.h"
#include "view/FileRecordView.h"
#include "view/TavNaStatusbarView.h"
#include "view/TavNaView.h"

#include <gtest/gtest.h>
#include <gtkmm/label.h>

#include <memory>
#include <vector>

namespace {

using namespace TavNA;

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

TEST(TavNaView, StacksItsAreasReplacesHeaderAndFooterAndSkipsNonWidgets) {
    TavNaView window;
    auto* main = dynamic_cast<Gtk::Box*>(window.get_child());
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(
        main->get_children(),
        (std::vector<Gtk::Widget*>{&window.headerBox(), &window.bodyBox(), &window.footerBox()}));

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

    first.reset();
    EXPECT_EQ(at(grid, 0, 0), nullptr);
    EXPECT_EQ(at(grid, 1, 0), nullptr);

    FileRecordView third;
    third.setFileName("third.pcap");
    panel.setRowView(third.getNameView(), third.getRemoveButtonView());
    EXPECT_EQ(at(grid, 0, 2), &third.nameButtonWidget());
    EXPECT_EQ(at(grid, 0, 0), nullptr);
}

} // namespace
