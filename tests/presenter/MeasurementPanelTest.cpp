// The measurements panel of the real window on the real merging unit's
// capture: picking the stream measures the visible window, a zoom makes the
// figures follow at once, a long window is measured on the background job,
// and a result overtaken by a later window never shows.
#include "model/TavNaModel.h"
#include "platform/view/PanelManagerPresenter.h"
#include "presenter/MeasurementPresenter.h"
#include "presenter/OscillographPresenter.h"
#include "presenter/TavNaPresenter.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace {

using namespace TavNA;
using namespace std::chrono_literals;

class MeasurementPanel : public testing::Test {
protected:
    MeasurementPanel() { shell->open(nullptr); }

    MeasurementView& panel() { return shell->getMeasurementPresenter().getViewObj(); }
    PackageListModel& packages() { return shell->getModel().getPackageListModel(); }
    OscillographView& scope() { return shell->getOscillographPresenter().getViewObj(); }

    // Waits until the panel has seen the new stream tree: a pick made before
    // then belongs to the tree the load replaces.
    void loadRealCapture() {
        shell->openFiles({TavTest::sharedCapture(
            "sv_abb-rex640_50hz_harmonics_novlan_smpsynch1_25646frames.pcapng")});
        ASSERT_TRUE(TavTest::pumpUntil(
            [&] {
                return !packages().getSvProto().getGroups().getItems().empty() &&
                       panel().getHeading() == "Выберите поток SV или отметьте его каналы";
            },
            60s));
    }
    // The figure in a table cell, "504.6 А" → 504.6, "400.4 кВ" → 400400.
    static double figure(const std::string& cell) {
        const double value = std::strtod(cell.c_str(), nullptr);
        return cell.find(" к") != std::string::npos ? value * 1e3 : value;
    }
    std::vector<std::string> row(const std::string& name) {
        for (const auto& r : panel().channelTable().rows())
            if (!r.empty() && r[0] == name)
                return r;
        return {};
    }
    bool settled() { return !shell->getMeasurementPresenter().isMeasuring(); }

    std::unique_ptr<TavNaPresenter> shell = std::make_unique<TavNaPresenter>();
};

TEST_F(MeasurementPanel, FollowsThePickAndEveryZoomAndDropsOvertakenResults) {
    std::vector<std::string> titles;
    for (Tav::IPanelView* p : shell->getPanelManager().panels())
        titles.push_back(p->title());
    EXPECT_NE(std::find(titles.begin(), titles.end(), "Измерения"), titles.end());

    loadRealCapture();

    scope().setSeriesRange(1.0, 1.2);
    packages().select(packages().getSvProto().getGroups().getItems()[0].get());
    ASSERT_TRUE(TavTest::pumpUntil([&] { return !row("Ia").empty(); }));
    EXPECT_EQ(panel().getHeading().rfind("10 периодов, 200 мс", 0), 0u) << panel().getHeading();
    EXPECT_NEAR(figure(row("Ia")[2]), 500, 10);
    EXPECT_NEAR(figure(row("Ua")[2]), 400e3, 4e3);
    EXPECT_EQ(row("Ua")[3], "0.00°");
    ASSERT_EQ(panel().sequenceTable().rows().size(), 2u);
    ASSERT_EQ(panel().powerTable().rows().size(), 4u);

    // A zoom in: the figures follow at once, over the cycles about the middle.
    scope().setSeriesRange(2.0, 2.005);
    TavTest::pumpPending();
    EXPECT_EQ(panel().getHeading().rfind("2 периода, 40 мс", 0), 0u) << panel().getHeading();

    // The whole capture goes to the job; a zoom in before it ends wins.
    scope().setSeriesRange(0.0, 6.4);
    TavTest::pumpPending();
    scope().setSeriesRange(3.0, 3.1);
    TavTest::pumpPending();
    TavTest::pumpFor(1500ms);
    EXPECT_EQ(panel().getHeading().rfind("5 периодов, 100 мс", 0), 0u) << panel().getHeading();

    scope().setSeriesRange(0.0, 6.4);
    TavTest::pumpPending();
    ASSERT_TRUE(TavTest::pumpUntil([&] { return settled() && !row("Ia").empty(); }, 60s));
    EXPECT_NE(panel().getHeading().find(" периодов, 6.40 с, "), std::string::npos)
        << panel().getHeading();
    EXPECT_NEAR(figure(row("Ia")[2]), 500, 10);

    // The harmonics of the chosen channel; the reference can move to Ia.
    panel().chooseReference(0);
    TavTest::pumpPending();
    ASSERT_TRUE(TavTest::pumpUntil([&] { return settled() && row("Ia")[3] == "0.00°"; }, 60s));
}

} // namespace
