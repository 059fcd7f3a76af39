// The diagnostics panel of the real window: verdicts of every stream, the
// picked stream's findings, and an event taking the oscillograph to it.
#include "model/TavNaModel.h"
#include "platform/view/PanelManagerPresenter.h"
#include "presenter/DiagnosticsPresenter.h"
#include "presenter/OscillographPresenter.h"
#include "presenter/TavNaPresenter.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace TavNA {
void PrintTo(const DiagnosticsLine& l, std::ostream* os) {
    *os << '{' << l.name << ", " << l.value << '}';
}
} // namespace TavNA

namespace {

using namespace TavNA;
using namespace std::chrono_literals;

class DiagnosticsPanel : public testing::Test {
protected:
    DiagnosticsPanel() { shell->open(nullptr); }

    DiagnosticsView& panel() { return shell->getDiagnosticsPresenter().getViewObj(); }
    PackageListModel& packages() { return shell->getModel().getPackageListModel(); }

    bool anyLine(const std::string& value) {
        const auto lines = panel().getLines();
        return std::any_of(lines.begin(), lines.end(),
                           [&](const DiagnosticsLine& l) { return l.value == value; });
    }
    // Opens the file and waits until the list holds `streams` verdicts.
    void load(const std::string& path, std::size_t streams) {
        shell->openFiles({path});
        ASSERT_TRUE(TavTest::pumpUntil(
            [&] { return panel().getLines().size() == streams && !anyLine("проверяется…"); }, 60s));
    }

    std::unique_ptr<TavNaPresenter> shell = std::make_unique<TavNaPresenter>();
};

TEST_F(DiagnosticsPanel, ListsVerdictsThenThePickedStreamsEventsWhichMoveTheOscillograph) {
    std::vector<std::string> titles;
    for (Tav::IPanelView* p : shell->getPanelManager().panels())
        titles.push_back(p->title());
    EXPECT_NE(std::find(titles.begin(), titles.end(), "Диагностика"), titles.end());

    load(TavTest::generated("panel_faults", {"--sv", "1", "--goose", "1", "--sv-fault",
                                             "drop@0.5x3", "--goose-fault", "repeat@0.1"}),
         2);
    EXPECT_EQ(panel().getLines(), (std::vector<DiagnosticsLine>{
                                      {"SV TavnaSV00", "разрывы smpCnt: 1, пропущенные выборки: 3"},
                                      {"GOOSE TavnaGOOSE00", "повторы sqNum: 1"}}));

    packages().select(packages().getSvProto().getGroups().getItems()[0].get());
    EXPECT_EQ(panel().getHeading(), "SV TavnaSV00: разрывы smpCnt: 1, пропущенные выборки: 3");
    const auto lines = panel().getLines();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines.back(),
              (DiagnosticsLine{"0.500750 с", "разрывы smpCnt: smpCnt 1999 -> 2003, пропущено 3"}));
    EXPECT_NE(std::find(lines.begin(), lines.end(), DiagnosticsLine{"пропущенные выборки", "3"}),
              lines.end());
    // Every count and measure is named in Russian, none by its report key.
    for (std::size_t i = 0; i + 1 < lines.size(); ++i)
        EXPECT_TRUE(std::any_of(lines[i].name.begin(), lines[i].name.end(), [](char c) {
            return (c & 0x80) != 0;
        })) << lines[i].name;

    panel().activateEvent(0);
    double from = 0, to = 0;
    shell->getOscillographPresenter().getViewObj().getSeriesRange(from, to);
    EXPECT_NEAR(from, 0.45075, 1e-6);
    EXPECT_NEAR(to, 0.55075, 1e-6);

    // A clean stream says so; no pick brings the list back.
    packages().select(packages().getGooseProto().getGroups().getItems()[0].get());
    EXPECT_EQ(panel().getHeading(), "GOOSE TavnaGOOSE00: повторы sqNum: 1");
    packages().select(nullptr);
    EXPECT_EQ(panel().getLines().size(), 2u);
    load(TavTest::generated("panel_clean", {"--sv", "1", "--vlan", "5", "--start", "1700000000.5"}),
         3);
    EXPECT_TRUE(anyLine("нет замечаний"));
}

// The protocols keep their streams in hash order; the panel lists them as the
// stream list does, SV then GOOSE, each by destination MAC.
TEST_F(DiagnosticsPanel, ListsStreamsInTheStreamListsOrder) {
    load(TavTest::generated("panel_order", {"--sv", "12", "--goose", "12", "--duration", "0.05"}),
         24);
    std::vector<std::string> titles, expected;
    for (const auto& line : panel().getLines())
        titles.push_back(line.name);
    for (const char* kind : {"SV TavnaSV", "GOOSE TavnaGOOSE"})
        for (int i = 0; i < 12; ++i)
            expected.push_back(kind + std::string(i < 10 ? "0" : "") + std::to_string(i));
    EXPECT_EQ(titles, expected);
}

} // namespace
