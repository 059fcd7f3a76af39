// The stream list on a real model: sections, captions, picks and the channel
// check boxes made from each stream's first frame.
#include "platform/view/PanelView.h"
#include "presenter/PackageListPresenter.h"
#include "tests/presenter/streams/LoadedModel.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>
#include <gtkmm/expander.h>
#include <gtkmm/flowboxchild.h>
#include <gtkmm/label.h>
#include <gtkmm/window.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace TavNA;
using TavTest::generated;

// Section titles as the panel shows them, top to bottom.
std::vector<std::string> sectionTitles(PackageListView& view) {
    std::vector<std::string> titles;
    auto rootChildren = view.get_children();
    if (rootChildren.size() != 1)
        return {"<" + std::to_string(rootChildren.size()) + " list boxes>"};
    auto* list = dynamic_cast<Gtk::Box*>(rootChildren.front());
    for (Gtk::Widget* child : list->get_children()) {
        auto* expander = dynamic_cast<Gtk::Expander*>(child);
        auto* label = expander ? dynamic_cast<Gtk::Label*>(expander->get_label_widget()) : nullptr;
        titles.push_back(label ? std::string(label->get_text()) : "<not a section>");
    }
    return titles;
}

bool isMarked(StreamView<ISvStreamView>& view) {
    return view.nameButton().get_style_context()->has_class("selected");
}

class StreamList : public testing::Test {
protected:
    TavTest::LoadedModel loaded;
    PackageListPresenter list{loaded.model.getPackageListModel(), loaded.model.getLoad()};
    std::vector<const IGroup*> picks;

    void SetUp() override {
        loaded.model.getPackageListModel().signalGroupSelected.connect(
            [this](const IGroup* group) { picks.push_back(group); });
    }

    SvStreamPresenter& sv(std::size_t i) { return *list.getSvStreams().at(i); }
    GooseStreamPresenter& goose(std::size_t i) { return *list.getGooseStreams().at(i); }
};

TEST_F(StreamList, ShowsOnlyTheSectionsOfProtocolsPresent) {
    loaded.open(generated("sv2", {"--sv", "2", "--duration", "0.01"}));
    EXPECT_EQ(sectionTitles(list.getViewObj()), std::vector<std::string>{"SV (2)"});

    TavTest::LoadedModel gooseOnly;
    PackageListPresenter gooseList(gooseOnly.model.getPackageListModel(),
                                   gooseOnly.model.getLoad());
    gooseOnly.open(TavTest::sharedCapture("goose_3pub_interlocking_vlan0_451frames.pcap"));
    EXPECT_EQ(sectionTitles(gooseList.getViewObj()), std::vector<std::string>{"GOOSE (3)"});

    TavTest::LoadedModel mixed;
    PackageListPresenter mixedList(mixed.model.getPackageListModel(), mixed.model.getLoad());
    mixed.open(generated("sv1goose2", {"--sv", "1", "--goose", "2", "--duration", "0.5"}));
    EXPECT_EQ(sectionTitles(mixedList.getViewObj()),
              (std::vector<std::string>{"SV (1)", "GOOSE (2)"}));
    // Each update replaces the entries, none of the earlier ones is kept.
    mixed.open(generated("sv2", {"--sv", "2", "--duration", "0.01"}));
    EXPECT_EQ(sectionTitles(mixedList.getViewObj()),
              (std::vector<std::string>{"SV (2)", "GOOSE (2)"}));
    EXPECT_EQ(mixedList.getSvStreams().size(), 2u);
}

// The protocol's container keeps them in hash order; the list must not.
TEST_F(StreamList, StreamsComeInTheOrderOfTheirDestinationMac) {
    loaded.open(generated("sv12goose12", {"--sv", "12", "--goose", "12", "--duration", "0.05"}));
    ASSERT_EQ(list.getSvStreams().size(), 12u);
    ASSERT_EQ(list.getGooseStreams().size(), 12u);
    for (std::size_t i = 0; i < 12; ++i) {
        char svCaption[64], gooseCaption[64];
        std::snprintf(svCaption, sizeof svCaption, "01:0c:cd:04:00:%02zx TavnaSV%02zu", i, i);
        std::snprintf(gooseCaption, sizeof gooseCaption, "01:0c:cd:01:00:%02zx TavnaGOOSE%02zu", i,
                      i);
        EXPECT_EQ(std::string(sv(i).getViewObj()->nameButton().get_label()).rfind(svCaption, 0), 0u)
            << sv(i).getViewObj()->nameButton().get_label();
        EXPECT_EQ(
            std::string(goose(i).getViewObj()->nameButton().get_label()).rfind(gooseCaption, 0), 0u)
            << goose(i).getViewObj()->nameButton().get_label();
    }
}

TEST_F(StreamList, CaptionAndTooltipIdentifyTheStream) {
    loaded.open(generated("sv1goose2", {"--sv", "1", "--goose", "2", "--duration", "0.5"}));
    auto& svButton = sv(0).getViewObj()->nameButton();
    EXPECT_EQ(svButton.get_label(), "01:0c:cd:04:00:00 TavnaSV00 | 2.0K");
    EXPECT_EQ(svButton.get_tooltip_text(),
              "Src mac: 02:00:00:00:01:00\nDst mac: 01:0c:cd:04:00:00\n"
              "AppId: 0x4000\nSvId: TavnaSV00\nPkgCount: 2000");

    std::map<std::string, std::string> tooltips;
    for (const auto& entry : list.getGooseStreams())
        tooltips[entry->getViewObj()->nameButton().get_label()] =
            entry->getViewObj()->nameButton().get_tooltip_text();
    ASSERT_EQ(tooltips.size(), 2u);
    const auto& [caption, tooltip] = *tooltips.begin();
    EXPECT_EQ(caption.substr(0, caption.find(" | ")), "01:0c:cd:01:00:00 TavnaGOOSE00");
    EXPECT_EQ(tooltip.substr(0, tooltip.find("\nPkgCount: ")),
              "Src mac: 02:00:00:00:02:00\nDst mac: 01:0c:cd:01:00:00\nAppId: 0x1000\n"
              "goId: TavnaGOOSE00\nGoCbRef: TAVNA00LD0/LLN0$GO$gcb1");
}

struct ChannelLook {
    std::string name;
    std::string description;
    int source;
    int phase;
};

std::vector<ChannelLook> channelsOf(SvGroup& group) {
    std::vector<ChannelLook> looks;
    for (const auto& c : group.getChannels().getItems())
        looks.push_back({c->getName(), c->getDescription(), static_cast<int>(c->getSourceType()),
                         static_cast<int>(c->getPhase())});
    return looks;
}

class ChannelNaming : public StreamList, public testing::WithParamInterface<int> {};

TEST_P(ChannelNaming, FollowsTheValueCount) {
    const int count = GetParam();
    loaded.open(
        generated("sv-c" + std::to_string(count),
                  {"--sv", "1", "--channels", std::to_string(count), "--duration", "0.01"}));
    SvStreamPresenter& entry = sv(0);
    SvGroup& group = entry.getModel();
    EXPECT_TRUE(group.getChannels().empty()) << "channels exist before the first pick";

    entry.getViewObj()->nameButton().clicked();
    const auto looks = channelsOf(group);
    ASSERT_EQ(looks.size(), static_cast<std::size_t>(count));
    const std::string id = " | TavnaSV00";
    const std::vector<std::string> names{"Ia", "Ib", "Ic", "In", "Ua", "Ub", "Uc", "Un"};
    for (int i = 0; i < count; ++i) {
        SCOPED_TRACE("channel " + std::to_string(i));
        ChannelLook want{"Ia", "Ia" + id, 0, 0};
        if (count == 3)
            want = {names[i], names[i] + id, 0, i};
        else if (count % 4 == 0)
            want = {names[i % 8], names[i % 8] + id, (i / 4) % 2, i % 4};
        if (count == 16 && i == 8)
            want.name = want.description = "Ia1" + id;
        EXPECT_EQ(looks[i].name, want.name);
        EXPECT_EQ(looks[i].description, want.description);
        EXPECT_EQ(looks[i].source, want.source);
        EXPECT_EQ(looks[i].phase, want.phase);
        EXPECT_EQ(group.getChannels().getItems()[i]->getIndex(), static_cast<std::uint64_t>(i));
    }

    // The boxes show the names in index order, and a second pick makes nothing new.
    auto& boxes = entry.getChannelsPresenter();
    ASSERT_EQ(boxes.getEntries().size(), looks.size());
    auto children = boxes.getViewObj().cells();
    ASSERT_EQ(children.size(), looks.size());
    for (std::size_t i = 0; i < looks.size(); ++i) {
        auto* cell = children[i];
        ASSERT_NE(cell, nullptr);
        EXPECT_EQ(cell->get_child(), &boxes.getEntries()[i]->getViewObj());
        EXPECT_EQ(boxes.getEntries()[i]->getViewObj().checkButton().get_label(), looks[i].name);
    }
    entry.getViewObj()->unselect();
    entry.getViewObj()->nameButton().clicked();
    EXPECT_EQ(group.getChannels().size(), looks.size());
    EXPECT_EQ(boxes.getEntries().size(), looks.size());
}

INSTANTIATE_TEST_SUITE_P(Counts, ChannelNaming, testing::Values(1, 3, 5, 8, 16));

TEST_F(StreamList, GooseChannelsAreNumbered) {
    loaded.open(generated(
        "goose1-b3s1", {"--goose", "1", "--bools", "3", "--bitstrings", "1", "--duration", "0.1"}));
    goose(0).getViewObj()->nameButton().clicked();
    std::vector<std::string> names, descriptions;
    for (const auto& c : goose(0).getModel().getChannels().getItems()) {
        names.push_back(c->getName());
        descriptions.push_back(c->getDescription());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"1", "2", "3", "4"}));
    EXPECT_EQ(descriptions.back(), "4 | TavnaGOOSE00");
}

TEST_F(StreamList, OnePickAtATime) {
    loaded.open(generated("sv2", {"--sv", "2", "--duration", "0.01"}));
    auto& a = *sv(0).getViewObj();
    auto& b = *sv(1).getViewObj();
    picks.clear(); // the update's own null pick

    a.nameButton().clicked();
    ASSERT_EQ(picks.size(), 1u);
    EXPECT_EQ(picks.back(), &sv(0).getModel());
    EXPECT_TRUE(isMarked(a));

    // Toggling the picked stream open or shut is no new pick.
    a.set_expanded(!a.get_expanded());
    a.nameButton().clicked();
    EXPECT_EQ(picks.size(), 1u);

    // The arrow of another stream picks it, and the first one loses its mark.
    b.set_expanded(!b.get_expanded());
    ASSERT_EQ(picks.size(), 2u);
    EXPECT_EQ(picks.back(), &sv(1).getModel());
    EXPECT_FALSE(isMarked(a));
    EXPECT_TRUE(isMarked(b));
    EXPECT_EQ(loaded.model.getPackageListModel().getSelectedGroup(), &sv(1).getModel());

    // A click on a name toggles its expander as well as picking it.
    const bool expanded = a.get_expanded();
    a.nameButton().clicked();
    EXPECT_EQ(a.get_expanded(), !expanded);
    EXPECT_EQ(picks.size(), 3u);
    EXPECT_FALSE(isMarked(b));

    list.getViewObj().unselectItems();
    EXPECT_FALSE(isMarked(a));
}

TEST_F(StreamList, TicksReachTheModelAndNothingComesBack) {
    loaded.open(generated("sv-c3", {"--sv", "1", "--channels", "3", "--duration", "0.01"}));
    std::vector<std::pair<SvChannel*, bool>> ticks;
    auto& packages = loaded.model.getPackageListModel();
    packages.signalSvChannelSelected.connect(
        [&](SvChannel* c, SvGroup*) { ticks.emplace_back(c, true); });
    packages.signalSvChannelUnSelected.connect(
        [&](SvChannel* c, SvGroup*) { ticks.emplace_back(c, false); });
    sv(0).getViewObj()->nameButton().clicked();

    auto& entry = *sv(0).getChannelsPresenter().getEntries()[1];
    SvChannel* channel = sv(0).getModel().getChannels().getItems()[1].get();
    entry.getViewObj().checkButton().set_active(true);
    entry.getViewObj().checkButton().set_active(false);
    EXPECT_EQ(ticks, (std::vector<std::pair<SvChannel*, bool>>{{channel, true}, {channel, false}}));

    entry.getViewObj().checkButton().set_active(true);
    channel->setSelected(false);
    EXPECT_TRUE(entry.getViewObj().checkButton().get_active());
}

TEST_F(StreamList, AnUpdateWithNoStreamsEmptiesThePanel) {
    loaded.open(generated("sv2", {"--sv", "2", "--duration", "0.01"}));
    ASSERT_FALSE(sectionTitles(list.getViewObj()).empty());
    loaded.model.getFileManagerModel().remove(generated("sv2", {}));
    TavTest::pumpPending();
    EXPECT_TRUE(sectionTitles(list.getViewObj()).empty());
}

// A stream of many values in a narrow panel: the boxes wrap to the panel's
// width, so every one can be seen and ticked without scrolling sideways.
TEST_F(StreamList, ChannelBoxesWrapInsideANarrowPanel) {
    constexpr int kWidth = 300;
    loaded.open(generated("sv-c128", {"--sv", "1", "--channels", "128", "--duration", "0.01"}));
    Gtk::Window window;
    Tav::PanelView panel("Потоки", &list.getViewObj());
    window.add(panel);
    window.set_default_size(kWidth, 600);
    window.show_all();
    sv(0).getViewObj()->nameButton().clicked();
    auto& boxes = sv(0).getChannelsPresenter().getViewObj();
    ASSERT_TRUE(TavTest::pumpUntil([&] { return boxes.cells().size() == 128; }));
    const auto cells = boxes.cells();
    ASSERT_TRUE(TavTest::pumpUntil([&] { return cells.back()->get_allocated_width() > 1; }));
    TavTest::pumpPending();

    EXPECT_EQ(panel.get_allocated_width(), kWidth);
    int lines = 0, lastY = -1;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        int x = -1, y = -1;
        ASSERT_TRUE(cells[i]->translate_coordinates(panel, 0, 0, x, y));
        EXPECT_GE(x, 0) << "box " << i;
        EXPECT_LE(x + cells[i]->get_allocated_width(), kWidth) << "box " << i;
        lines += y != lastY;
        lastY = y;
    }
    // More than one a line where they fit, not one long column.
    EXPECT_LT(lines, static_cast<int>(cells.size()));
    panel.releaseContent();
}

} // namespace
