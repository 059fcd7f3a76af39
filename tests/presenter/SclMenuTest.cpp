// "Файл" → "Открыть SCL…" through the real module: the chooser answered as a
// person would, the stream list made again with channels named by the
// configuration's data sets, and a broken file told with its line.
#include "model/TavNaModel.h"
#include "presenter/DiagnosticsPresenter.h"
#include "presenter/MeasurementPresenter.h"
#include "presenter/PackageListPresenter.h"
#include "presenter/RecordDescriptionPresenter.h"
#include "presenter/TavNaMenuPresenter.h"
#include "presenter/TavNaPresenter.h"
#include "tests/platform/view/DialogAnswer.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"
#include "view/PackageListView.h"
#include "view/SclDescView.h"
#include "view/StreamChannelView.h"
#include "view/StreamView.h"
#include "view/TavNaMenuView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <gtkmm/filechooserdialog.h>
#include <gtkmm/messagedialog.h>

#include <fstream>

namespace {

using namespace TavNA;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class SclMenu : public ::testing::Test {
protected:
    SclMenu() {
        shell->open(nullptr);
        boxes = TavTest::answerDialogs<Gtk::MessageDialog>(
            [this](Gtk::MessageDialog& box) -> std::optional<int> {
                messages.push_back(box.property_text().get_value() + "\n" +
                                   box.property_secondary_text().get_value());
                return Gtk::RESPONSE_OK;
            },
            true);
    }
    ~SclMenu() override { boxes.disconnect(); }

    void load(const std::string& path) {
        shell->getModel().parseFile(path);
        ASSERT_TRUE(TavTest::pumpUntil(
            [&] { return !shell->getPackageListPresenter().getSvStreams().empty(); }, 60s));
        TavTest::pumpPending();
    }

    // Chooses the item and the file in its chooser.
    void openScl(const std::string& path) {
        auto& menu = dynamic_cast<TavNaMenuView&>(*shell->getMenuPresenter().getView());
        TavTest::answerNextDialog<Gtk::FileChooserDialog>(
            [this, path](Gtk::FileChooserDialog& d) -> std::optional<int> {
                filterName = d.get_filter()->get_name();
                if (d.get_filename() != path) {
                    d.set_filename(path);
                    return std::nullopt;
                }
                return Gtk::RESPONSE_ACCEPT;
            });
        const std::size_t told = messages.size();
        const std::size_t open = shell->getModel().getScl().files().size();
        menu.openSclItem().activate();
        // The file is read on a worker; it ends in the configuration or a message.
        ASSERT_TRUE(TavTest::pumpUntil(
            [&] {
                return messages.size() > told || shell->getModel().getScl().files().size() > open;
            },
            60s));
        TavTest::pumpPending();
    }

    // The check boxes' labels of the first stream of the list, once picked.
    template <typename Streams> std::vector<std::string> channelNames(const Streams& streams) {
        auto& stream = *streams.at(0);
        stream.getViewObj()->nameButton().clicked();
        TavTest::pumpPending();
        std::vector<std::string> names;
        for (const auto& entry : stream.getChannelsPresenter().getEntries())
            names.push_back(entry->getViewObj().checkButton().get_label());
        return names;
    }

    std::unique_ptr<TavNaPresenter> shell = std::make_unique<TavNaPresenter>();
    std::vector<std::string> messages;
    std::string filterName;
    sigc::connection boxes;
};

TEST_F(SclMenu, ChannelsAreNamedByTheConfigurationOpenedBesideTheCapture) {
    const std::string dir = TavTest::tempDir();
    TavTest::runGenerator({dir + "/bay.pcap", "--sv", "1", "--goose", "1", "--duration", "0.2",
                           "--scl", dir + "/bay.scd"});
    load(dir + "/bay.pcap");
    const auto& list = shell->getPackageListPresenter();
    EXPECT_EQ(channelNames(list.getSvStreams()).at(0), "Ia");

    openScl(dir + "/bay.scd");
    EXPECT_EQ(filterName, "SCL (*.scd *.icd *.cid *.xml)");
    EXPECT_TRUE(messages.empty()) << messages.front();
    EXPECT_THAT(channelNames(list.getSvStreams()),
                ElementsAre("TCTR1.Amp", "TCTR2.Amp", "TCTR3.Amp", "TCTR4.Amp", "TVTR1.Vol",
                            "TVTR2.Vol", "TVTR3.Vol", "TVTR4.Vol"));
    // The logical node's description is the box's tooltip.
    const auto& entries = list.getSvStreams().at(0)->getChannelsPresenter().getEntries();
    EXPECT_EQ(entries.at(0)->getViewObj().checkButton().get_tooltip_text(), "Current A");
    // The curve's description: what the legend and COMTRADE channels are called.
    EXPECT_EQ(
        list.getSvStreams().at(0)->getModel().getChannels().getItems().at(4)->getDescription(),
        "TVTR1.Vol | TavnaSV00");
    EXPECT_THAT(channelNames(list.getGooseStreams()),
                ElementsAre("GGIO1.Ind1.stVal", "GGIO1.Ind2.stVal", "GGIO1.Ind3.stVal",
                            "GGIO1.Ind4.stVal"));

    // The measurements name the picked stream's channels the same way.
    auto& packages = shell->getModel().getPackageListModel();
    packages.select(packages.getSvProto().getGroups().getItems().at(0).get());
    const auto& table = shell->getMeasurementPresenter().getViewObj().channelTable();
    ASSERT_TRUE(TavTest::pumpUntil([&] { return table.rows().size() == 8; }));
    EXPECT_EQ(table.rows().at(0).at(0), "TCTR1.Amp");
    EXPECT_EQ(table.rows().at(4).at(0), "TVTR1.Vol");
}

TEST_F(SclMenu, ABrokenFileIsToldWithItsLineAndTheNamesStay) {
    const std::string dir = TavTest::tempDir();
    TavTest::runGenerator({dir + "/plain.pcap", "--sv", "1", "--duration", "0.1"});
    const std::string broken = dir + "/broken.scd";
    std::ofstream(broken) << "<SCL>\n  <IED name=\"a\">\n  </LDevice>\n</SCL>\n";
    load(dir + "/plain.pcap");
    openScl(broken);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_THAT(messages[0], HasSubstr("Не удалось прочитать файл SCL."));
    EXPECT_THAT(messages[0], HasSubstr(broken + ":3: not well-formed XML"));
    EXPECT_EQ(channelNames(shell->getPackageListPresenter().getSvStreams()).at(0), "Ia");
}

// The list marks the stream the configuration lacks and lists the block the
// capture lacks; the description panel tells the picked stream's control
// block and each field the stream contradicts.
TEST_F(SclMenu, AbsentUnknownAndContradictingStreamsAreTold) {
    const std::string dir = TavTest::tempDir();
    TavTest::runGenerator({dir + "/two.pcap", "--sv", "2", "--duration", "0.1"});
    TavTest::runGenerator({dir + "/one.pcap", "--sv", "1", "--goose", "1", "--duration", "0.01",
                           "--scl", dir + "/one.scd", "--scl-mismatch", "confRev"});
    load(dir + "/two.pcap");
    auto& list = shell->getPackageListPresenter();
    EXPECT_TRUE(list.getViewObj().absentLines().empty());
    openScl(dir + "/one.scd");
    const auto& streams = list.getSvStreams();
    EXPECT_THAT(list.getViewObj().absentLines(),
                ElementsAre("GOOSE TAVNA00LD0/LLN0$GO$gcb1 (TavnaGO00)"));
    EXPECT_THAT(streams.at(0)->getViewObj()->nameButton().get_label(),
                ::testing::Not(HasSubstr("нет в SCL")));
    EXPECT_THAT(streams.at(1)->getViewObj()->nameButton().get_label(), HasSubstr(" | нет в SCL"));

    auto& section = shell->getRecordDescriptionPresenter().getScl().getViewObj();
    channelNames(streams);
    EXPECT_EQ(section.getRowValue(SclDescView::ControlBlock), "TAVNA/LLN0$MS$MSVCB00 (TavnaMU)");
    EXPECT_EQ(section.getRowValue(SclDescView::Mismatches), "confRev: в SCL 2, в захвате 1");

    streams.at(1)->getViewObj()->nameButton().clicked();
    TavTest::pumpPending();
    EXPECT_EQ(section.getRowValue(SclDescView::ControlBlock), "не описан в SCL");
    EXPECT_FALSE(section.isRowVisible(SclDescView::Mismatches));
}

// The checks take what the configuration says the stream sends as nominal:
// here one ASDU more a frame and twice the rate.
TEST_F(SclMenu, ChecksMeasureTheStreamAgainstItsConfiguration) {
    const std::string dir = TavTest::tempDir();
    TavTest::runGenerator({dir + "/asdus.pcap", "--sv", "1", "--asdus", "2", "--duration", "1",
                           "--scl", dir + "/asdus.scd", "--scl-mismatch", "nofASDU",
                           "--scl-mismatch", "smpRate"});
    load(dir + "/asdus.pcap");
    openScl(dir + "/asdus.scd");
    auto& packages = shell->getModel().getPackageListModel();
    packages.select(packages.getSvProto().getGroups().getItems().at(0).get());
    auto& diagnostics = shell->getDiagnosticsPresenter().getViewObj();
    const auto value = [&](const std::string& name) {
        for (const auto& line : diagnostics.getLines())
            if (line.name == name)
                return line.value;
        return std::string();
    };
    ASSERT_TRUE(TavTest::pumpUntil([&] { return value("ASDU в кадре").size() > 1; }));
    EXPECT_EQ(value("ASDU в кадре"), "2 (в SCL 3)");
    EXPECT_EQ(value("кадры с числом ASDU не по SCL"), "2000");
    EXPECT_EQ(value("период smpCnt"), "4000 (номинально 8000)");
}

} // namespace
