// The description panel follows the picked stream: tag rows come and go, the
// protocol section matches the stream, and the count covers every record.
#include "presenter/RecordDescriptionPresenter.h"
#include "tests/presenter/streams/LoadedModel.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace TavNA;
using TavTest::generated;

class RecordDescription : public testing::Test {
protected:
    TavTest::LoadedModel loaded;
    RecordDescriptionPresenter panel{loaded.model.getPackageListModel(), loaded.model.getLoad()};

    PackageListModel& packages() { return loaded.model.getPackageListModel(); }
    EthernetDescView& ethernet() { return panel.getEthernet().getViewObj(); }

    std::vector<Gtk::Widget*> sections() { return panel.getViewObj().sectionsBox().get_children(); }

    // The Ethernet rows on show, as "name value".
    std::vector<std::string> shownEthernetRows() {
        std::vector<std::string> rows;
        for (int row = EthernetDescView::DstMac; row <= EthernetDescView::PrpLine; ++row)
            if (ethernet().isRowVisible(row))
                rows.push_back(ethernet().getRowName(row) + ethernet().getRowValue(row));
        return rows;
    }

    void pickFirstSv() {
        packages().select(packages().getSvProto().getGroups().getItems()[0].get());
    }
};

TEST_F(RecordDescription, TagRowsShowForTaggedStreamsOnly) {
    loaded.open(generated("sv1-vlan100", {"--sv", "1", "--vlan", "100", "--duration", "0.01"}));
    loaded.open(
        generated("goose1", {"--goose", "1", "--duration", "0.01", "--start", "1700000000.5"}));
    pickFirstSv();
    EXPECT_EQ(shownEthernetRows(),
              (std::vector<std::string>{"Приемник: 01:0c:cd:04:00:00",
                                        "Источник: 02:00:00:00:01:00", "VLAN ID: 100"}));
    EXPECT_EQ(sections(), (std::vector<Gtk::Widget*>{&ethernet(), &panel.getSv().getViewObj(),
                                                     &panel.getOther().getViewObj()}));
    EXPECT_EQ(panel.getSv().getViewObj().getRowValue(SvDescView::SvId), "TavnaSV00");
    EXPECT_EQ(panel.getSv().getViewObj().getRowValue(SvDescView::AppId), "0x4000");
    EXPECT_EQ(panel.getSv().getViewObj().getRowValue(SvDescView::Simulation), "нет");
    EXPECT_EQ(panel.getOther().getViewObj().getRowValue(OtherDescView::PkgCount), "40");

    // The untagged GOOSE stream hides the VLAN row again and takes the middle.
    packages().select(packages().getGooseProto().getGroups().getItems()[0].get());
    EXPECT_EQ(shownEthernetRows(), (std::vector<std::string>{"Приемник: 01:0c:cd:01:00:00",
                                                             "Источник: 02:00:00:00:02:00"}));
    EXPECT_EQ(sections(), (std::vector<Gtk::Widget*>{&ethernet(), &panel.getGoose().getViewObj(),
                                                     &panel.getOther().getViewObj()}));
    auto& goose = panel.getGoose().getViewObj();
    EXPECT_EQ(goose.getRowValue(GooseDescView::AppId), "0x1000");
    EXPECT_EQ(goose.getRowValue(GooseDescView::GoCbRef), "TAVNA00LD0/LLN0$GO$gcb1");
    EXPECT_EQ(goose.getRowValue(GooseDescView::DataSet), "TAVNA00LD0/LLN0$DS1");
    EXPECT_EQ(goose.getRowValue(GooseDescView::GoId), "TavnaGOOSE00");

    packages().select(nullptr);
    EXPECT_TRUE(sections().empty());
}

TEST_F(RecordDescription, RedundancyLinesButNeverTheirIds) {
    loaded.open(generated("sv1-hsrA-sim",
                          {"--sv", "1", "--hsr", "A", "--simulation", "--duration", "0.01"}));
    pickFirstSv();
    EXPECT_EQ(shownEthernetRows(),
              (std::vector<std::string>{"Приемник: 01:0c:cd:04:00:00",
                                        "Источник: 02:00:00:00:01:00", "HSR Line: A"}));
    EXPECT_EQ(panel.getSv().getViewObj().getRowValue(SvDescView::Simulation), "да");

    TavTest::LoadedModel prp;
    RecordDescriptionPresenter prpPanel(prp.model.getPackageListModel(), prp.model.getLoad());
    prp.open(generated("sv1-prpB", {"--sv", "1", "--prp", "B", "--duration", "0.01"}));
    auto& prpPackages = prp.model.getPackageListModel();
    prpPackages.select(prpPackages.getSvProto().getGroups().getItems()[0].get());
    auto& view = prpPanel.getEthernet().getViewObj();
    EXPECT_TRUE(view.isRowVisible(EthernetDescView::PrpLine));
    EXPECT_EQ(view.getRowValue(EthernetDescView::PrpLine), "B");
    EXPECT_FALSE(view.isRowVisible(EthernetDescView::PrpId));
    EXPECT_FALSE(view.isRowVisible(EthernetDescView::HsrLine));
}

TEST_F(RecordDescription, CountCoversEveryRecordOfTheStream) {
    using TavIec61850Parser::Package;
    TavIec61850Parser::Sv older, newer;
    auto fill = [](TavIec61850Parser::Sv& record, const std::string& path, int n) {
        TavIec61850Parser::PackageFile file(path);
        file.packages.assign(n, Package{});
        record.files.insert(std::move(file));
    };
    fill(older, "a.pcap", 60);
    fill(older, "b.pcap", 40);
    fill(newer, "c.pcap", 50);
    SvGroup group;
    group.addRecord(&older);
    group.addRecord(&newer);
    packages().select(&group);
    EXPECT_EQ(panel.getOther().getViewObj().getRowValue(OtherDescView::PkgCount), "150");

    SvGroup empty;
    TavIec61850Parser::Sv noFiles;
    empty.addRecord(&noFiles);
    packages().select(&empty);
    EXPECT_EQ(panel.getOther().getViewObj().getRowValue(OtherDescView::PkgCount), "0");
    packages().select(nullptr);
}

} // namespace
