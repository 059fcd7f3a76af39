#include "platform/view/AboutWindowActivatorPresenter.h"
#include "platform/view/DialogPresenter.h"
#include "platform/view/FileDialogPresenter.h"
#include "platform/view/HelpView.h"
#include "platform/view/Window.h"
#include "tests/platform/view/DialogAnswer.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <fstream>
#include <gtkmm/aboutdialog.h>
#include <gtkmm/filechooserdialog.h>
#include <gtkmm/messagedialog.h>

namespace {

class ParentWindow : public Tav::Window, public Tav::IView {};

std::string primaryText(Gtk::MessageDialog& d) {
    return d.property_text().get_value();
}
std::string secondaryText(Gtk::MessageDialog& d) {
    return d.property_secondary_text().get_value();
}

class DialogTest : public testing::Test {
protected:
    void SetUp() override {
        parent_.set_title("parent");
        parent_.show_all();
        ASSERT_TRUE(TavTest::pumpUntil([&] { return parent_.get_mapped(); }));
    }
    ParentWindow parent_;
};

TEST_F(DialogTest, AnInformationBoxIsModalOverTheParentWithOneOkButton) {
    bool seen = false;
    TavTest::answerNextDialog<Gtk::MessageDialog>([&](Gtk::MessageDialog& d) -> std::optional<int> {
        seen = true;
        EXPECT_TRUE(d.get_modal());
        EXPECT_EQ(d.get_transient_for(), &parent_);
        EXPECT_EQ(primaryText(d), "Файл отклонён");
        EXPECT_EQ(secondaryText(d), "");
        EXPECT_NE(d.get_widget_for_response(Gtk::RESPONSE_OK), nullptr);
        EXPECT_EQ(d.get_widget_for_response(Gtk::RESPONSE_CANCEL), nullptr);
        EXPECT_EQ(d.get_widget_for_response(Gtk::RESPONSE_NO), nullptr);
        return Gtk::RESPONSE_OK;
    });
    // The kind is passed as a plain number by callers.
    const auto result = Tav::DialogPresenter::show(&parent_, "Файл отклонён", "",
                                                   static_cast<Tav::DialogResult>(16));
    EXPECT_TRUE(seen);
    EXPECT_EQ(result, Tav::DialogResult::Ok);
}

TEST_F(DialogTest, AQuestionAnswersYesOrNoAndAClosedBoxAnswersNothing) {
    TavTest::answerNextDialog<Gtk::MessageDialog>([](Gtk::MessageDialog& d) -> std::optional<int> {
        EXPECT_EQ(secondaryText(d), "подробности");
        return Gtk::RESPONSE_NO;
    });
    EXPECT_EQ(Tav::DialogPresenter::show(&parent_, "Удалить?", "подробности",
                                         Tav::DialogResult::Question),
              Tav::DialogResult::No);
    TavTest::answerNextDialog<Gtk::MessageDialog>(
        [](Gtk::MessageDialog&) -> std::optional<int> { return Gtk::RESPONSE_DELETE_EVENT; });
    EXPECT_EQ(Tav::DialogPresenter::show(nullptr, "no parent", "", Tav::DialogResult::Error),
              Tav::DialogResult::None);
}

// Choosing a file through the chooser is checked with the menu that opens it.
TEST_F(DialogTest, TheFileChooserOffersItsFiltersAndACancelGivesNothing) {
    TavTest::answerNextDialog<Gtk::FileChooserDialog>(
        [&](Gtk::FileChooserDialog& d) -> std::optional<int> {
            EXPECT_EQ(d.get_transient_for(), &parent_);
            EXPECT_EQ(d.get_action(), Gtk::FILE_CHOOSER_ACTION_OPEN);
            const auto filters = d.list_filters();
            EXPECT_EQ(filters.size(), 1u);
            if (!filters.empty()) {
                EXPECT_EQ(filters[0]->get_name(), "pcap file (*.pcap)");
            }
            return Gtk::RESPONSE_CANCEL;
        });
    EXPECT_EQ(Tav::FileDialogPresenter::show(&parent_, "открыть PCAP файл",
                                             {{"pcap file (*.pcap)", "*.pcap"}}, false),
              "");
}

// A broken icon is no reason to fail the box.
TEST_F(DialogTest, TheAboutBoxComesUpOverItsParentEvenWithABrokenIcon) {
    const std::string icon = TavTest::tempDir() + "/broken.png";
    std::ofstream(icon) << "not an image";
    bool seen = false;
    TavTest::answerNextDialog<Gtk::AboutDialog>([&](Gtk::AboutDialog& d) -> std::optional<int> {
        seen = true;
        EXPECT_EQ(d.get_program_name(), "Сетевой Анализатор");
        EXPECT_EQ(d.get_version(), "1.0.0");
        EXPECT_EQ(d.get_transient_for(), &parent_);
        return Gtk::RESPONSE_CLOSE;
    });
    Tav::AboutWindowActivatorPresenter::show(&parent_, "Сетевой Анализатор", "1.0.0", icon);
    EXPECT_TRUE(seen);
}

TEST_F(DialogTest, AMissingHelpDocumentIsNamedInAMessage) {
    const std::string missing = "Help/ru-RU/Главное окно программы.pdf";
    std::string told;
    TavTest::answerNextDialog<Gtk::MessageDialog>([&](Gtk::MessageDialog& d) -> std::optional<int> {
        told = primaryText(d) + "\n" + secondaryText(d);
        EXPECT_EQ(d.get_transient_for(), &parent_);
        return Gtk::RESPONSE_OK;
    });
    Tav::HelpView::show(&parent_, missing);
    EXPECT_NE(told.find(missing), std::string::npos) << told;
}

} // namespace
