#include "platform/view/PanelManagerPresenter.h"
#include "platform/view/PanelView.h"
#include "platform/view/Window.h"
#include "tests/support/GuiTest.h"

#include <gtest/gtest.h>

#include <gtkmm/label.h>
#include <memory>

namespace {

// A content view as the module's presenters make them: owned outside the panel.
class LabelView : public Gtk::Label, public Tav::IView {
public:
    explicit LabelView(const std::string& text) : Gtk::Label(text) {}
};

struct Box {
    int x, y, width, height;
    int right() const { return x + width; }
    int bottom() const { return y + height; }
};

Box placeOf(Gtk::Widget& widget, Gtk::Widget& in) {
    int x = 0, y = 0;
    widget.translate_coordinates(in, 0, 0, x, y);
    return {x, y, widget.get_allocated_width(), widget.get_allocated_height()};
}

Gtk::Widget& widgetOf(Tav::IPanelView* panel) {
    return *dynamic_cast<Gtk::Widget*>(panel);
}

// The module's own layout: list left with the files under it, description
// right, oscillograph in the centre at the bottom.
class PanelManagerTest : public testing::Test {
protected:
    void SetUp() override {
        window_ = std::make_unique<Tav::Window>();
        manager_ = std::make_unique<Tav::PanelManagerPresenter>();
        window_->add(*dynamic_cast<Gtk::Widget*>(manager_->getView()));
        list_ = manager_->newPanel("Список SV и GOOSE", Tav::Positions::Left, listView_, nullptr);
        list_->setMinimumSize(0, 0);
        list_->setPreferredSize(300, 200);
        description_ =
            manager_->newPanel("Описание", Tav::Positions::Right, descriptionView_, nullptr);
        description_->setMinimumSize(0, 0);
        plot_ = manager_->newPanel("Осциллограмма", Tav::Positions::Bottom, plotView_, nullptr);
        plot_->setMinimumSize(0, 0);
        files_ = manager_->newPanel("Файлы", Tav::Positions::Bottom, filesView_, list_);
        files_->setMinimumSize(0, 0);
        files_->setPreferredSize(300, 100);
        window_->set_default_size(1200, 800);
        window_->show_all();
        ASSERT_TRUE(TavTest::pumpUntil([&] {
            return window_->get_mapped() && widgetOf(files_).get_allocated_height() > 1 &&
                   window_->get_allocated_width() >= 1200;
        }));
        TavTest::pumpPending();
    }

    Box place(Tav::IPanelView* panel) { return placeOf(widgetOf(panel), *window_); }

    LabelView listView_{"list"}, descriptionView_{"description"}, plotView_{"plot"},
        filesView_{"files"};
    std::unique_ptr<Tav::Window> window_;
    std::unique_ptr<Tav::PanelManagerPresenter> manager_;
    Tav::IPanelView *list_ = nullptr, *description_ = nullptr, *plot_ = nullptr, *files_ = nullptr;
};

TEST_F(PanelManagerTest, PanelsSitWhereTheirPositionsSay) {
    const Box list = place(list_), files = place(files_), description = place(description_),
              plot = place(plot_);
    // Columns: left | centre | right.
    EXPECT_LE(list.right(), plot.x);
    EXPECT_LE(plot.right(), description.x);
    EXPECT_EQ(description.right(), window_->get_allocated_width());
    // The centre column holds only the bottom panel, so it has all the height.
    EXPECT_EQ(plot.y, 0);
    EXPECT_EQ(plot.height, window_->get_allocated_height());
    // A child at Bottom sits under its parent, in the parent's column.
    EXPECT_EQ(files.x, list.x);
    EXPECT_EQ(files.width, list.width);
    EXPECT_GE(files.y, list.bottom());
    EXPECT_EQ(files.bottom(), window_->get_allocated_height());
    // A side column that asks for nothing starts at its natural width.
    int minimum = 0, natural = 0;
    widgetOf(description_).get_preferred_width(minimum, natural);
    EXPECT_EQ(description.width, natural);
    // Preferred sizes: 300 wide column; list and files both grow with the
    // window, so they share its height 200 : 100.
    EXPECT_EQ(list.width, 300);
    EXPECT_EQ(list.height, window_->get_allocated_height() * 200 / 300);
    EXPECT_EQ(manager_->panels().size(), 4u);
    EXPECT_EQ(manager_->panels()[3]->title(), "Файлы");
}

TEST_F(PanelManagerTest, APanelCollapsesToItsTitleBarAndComesBack) {
    auto* panel = dynamic_cast<Tav::PanelView*>(files_);
    const int before = place(files_).height;
    const int listBefore = place(list_).height;
    panel->collapseButton().clicked();
    EXPECT_TRUE(files_->isCollapsed());
    // Its room goes to the panel above it; the bar stays at the bottom.
    ASSERT_TRUE(TavTest::pumpUntil([&] { return place(list_).height > listBefore; }));
    EXPECT_FALSE(filesView_.get_mapped());
    EXPECT_LT(place(files_).height, before);
    EXPECT_EQ(place(files_).bottom(), window_->get_allocated_height());

    panel->collapseButton().clicked();
    EXPECT_FALSE(files_->isCollapsed());
    ASSERT_TRUE(TavTest::pumpUntil([&] { return place(list_).height == listBefore; }));
    EXPECT_TRUE(filesView_.get_mapped());
    EXPECT_EQ(place(files_).height, before);
}

// However tall or wide the content grows, it scrolls inside its panel and
// the window asks for no more room.
TEST_F(PanelManagerTest, ContentScrollsInsideItsPanel) {
    listView_.set_size_request(2000, 5000);
    TavTest::pumpPending();
    int minimum = 0, natural = 0;
    window_->get_preferred_height(minimum, natural);
    EXPECT_LT(minimum, 600);
    EXPECT_LT(natural, 600);
    window_->get_preferred_width(minimum, natural);
    EXPECT_LT(minimum, 600);
    EXPECT_EQ(window_->get_allocated_height(), 800);
    EXPECT_LT(place(list_).height, 800);
}

TEST_F(PanelManagerTest, AMinimumSizeHolds) {
    description_->setMinimumSize(420, 0);
    EXPECT_TRUE(TavTest::pumpUntil([&] { return place(description_).width >= 420; }));
    EXPECT_LE(place(plot_).right(), place(description_).x);
}

TEST_F(PanelManagerTest, ContentOutlivesTheLayout) {
    manager_.reset();
    TavTest::pumpPending();
    // The views belong to their presenters: still whole, and free to go elsewhere.
    EXPECT_EQ(listView_.get_parent(), nullptr);
    EXPECT_EQ(filesView_.get_text(), "files");
    Gtk::Window other;
    other.add(filesView_);
    other.show_all();
    EXPECT_TRUE(TavTest::pumpUntil([&] { return filesView_.get_mapped(); }));
    other.remove();
}

} // namespace
