#include "model/PackageListModel.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace TavNA;
using TavCalculate::Phase;
using TavRelay::AnalogChannelSourceType;

// A stream record as the parser would group it; only `id` tells them apart.
template <typename Record>
Record streamRecord(std::string Record::*idField, const std::string& id) {
    Record record;
    record.srcMac = "02:00:00:00:01:00";
    record.dstMac = "01:0c:cd:04:00:00";
    record.appId = 0x4000;
    record.*idField = id;
    return record;
}

TEST(SvChannel, SourceTypeSetsTheScaleAndUnknownValuesChangeNothing) {
    SvChannel channel;
    EXPECT_EQ(channel.getSerie().kind, Tav::Series::Analog);
    EXPECT_EQ(channel.getSerie().gain, 1.0f);
    EXPECT_EQ(channel.getTransformRatio(), 0.0f);

    // One raw unit is 1 mA of current or 10 mV of voltage, whatever was set before.
    channel.setTransformRatio(5.0f);
    channel.setSourceType(AnalogChannelSourceType::Current);
    EXPECT_EQ(channel.getTransformRatio(), 0.001f);
    EXPECT_EQ(channel.getSerie().unit, "А");
    EXPECT_EQ(channel.getSerie().gain, 1.0f);
    channel.setSourceType(AnalogChannelSourceType::Voltage);
    EXPECT_EQ(channel.getTransformRatio(), 0.01f);
    EXPECT_EQ(channel.getSerie().unit, "В");

    channel.setTransformRatio(7.0f);
    channel.setSourceType(static_cast<AnalogChannelSourceType>(9));
    EXPECT_EQ(channel.getTransformRatio(), 7.0f);
    EXPECT_EQ(channel.getSerie().gain, 1.0f);
    EXPECT_EQ(static_cast<int>(channel.getSourceType()), 9);

    // Four phases, four colours; an unknown phase keeps the curve's colour.
    std::set<std::uint32_t> colours;
    for (Phase phase : {Phase::A, Phase::B, Phase::C, Phase::N}) {
        channel.setPhase(phase);
        EXPECT_EQ(channel.getPhase(), phase);
        colours.insert(channel.getSerie().color);
    }
    EXPECT_EQ(colours.size(), 4u);
    const std::uint32_t neutral = channel.getSerie().color;
    channel.setPhase(static_cast<Phase>(4));
    EXPECT_EQ(channel.getSerie().color, neutral);
    EXPECT_EQ(static_cast<int>(channel.getPhase()), 4);
}

// A tree of one SV and one GOOSE stream, as an update on a database builds it.
class PackageListModelTest : public ::testing::Test {
protected:
    void SetUp() override {
        db.svProto.svs.insert(streamRecord(&TavIec61850Parser::Sv::svId, "SV-A"));
        db.gooseProto.gooses.insert(streamRecord(&TavIec61850Parser::Goose::goId, "GO-A"));
        db.gooseProto.gooses.insert(streamRecord(&TavIec61850Parser::Goose::goId, "GO-B"));
        model.signalGroupSelected.connect(
            [this](const IGroup* g) { events.push_back(g == nullptr ? "group:none" : "group"); });
        model.signalUpdated.connect([this] { events.push_back("updated"); });
        model.signalSvChannelSelected.connect([this](SvChannel* c, SvGroup* g) {
            events.push_back("sv+");
            lastSv = c;
            lastSvGroup = g;
        });
        model.signalSvChannelUnSelected.connect(
            [this](SvChannel*, SvGroup*) { events.push_back("sv-"); });
        model.signalGooseChannelSelected.connect([this](GooseChannel* c, GooseGroup* g) {
            events.push_back("goose+");
            lastGoose = c;
            lastGooseGroup = g;
        });
        model.signalGooseChannelUnSelected.connect(
            [this](GooseChannel*, GooseGroup*) { events.push_back("goose-"); });
    }

    void update() { model.update(db, filter, groupFilter); }

    TavIec61850Parser::Db db;
    TavIec61850Parser::Filter filter;
    GroupFilter groupFilter;
    PackageListModel model;
    std::vector<std::string> events;
    SvChannel* lastSv = nullptr;
    SvGroup* lastSvGroup = nullptr;
    GooseChannel* lastGoose = nullptr;
    GooseGroup* lastGooseGroup = nullptr;
};

TEST_F(PackageListModelTest, UpdateBuildsOneGroupPerRecordAndTellsInOrder) {
    update();
    EXPECT_EQ(events, (std::vector<std::string>{"group:none", "updated"}));
    ASSERT_EQ(model.getSvProto().getGroups().size(), 1u);
    ASSERT_EQ(model.getGooseProto().getGroups().size(), 2u);
    EXPECT_TRUE(model.getSvProto().getLabel().empty());

    const SvGroup& sv = *model.getSvProto().getGroups().getItems()[0];
    ASSERT_EQ(sv.getSvs().size(), 1u);
    EXPECT_EQ(sv.getSvs()[0], &*db.svProto.svs.begin());
    EXPECT_TRUE(sv.getChannels().empty());

    std::vector<std::string> goIds;
    for (const auto& group : model.getGooseProto().getGroups().getItems()) {
        ASSERT_EQ(group->getGooses().size(), 1u);
        goIds.push_back(group->getGooses()[0]->goId);
    }
    std::vector<std::string> inDb;
    for (const auto& goose : db.gooseProto.gooses)
        inDb.push_back(goose.goId);
    EXPECT_EQ(goIds, inDb) << "groups follow the database's own order";

    TavIec61850Parser::Db empty;
    events.clear();
    model.update(empty, filter, groupFilter);
    EXPECT_EQ(events, (std::vector<std::string>{"group:none", "updated"}));
    EXPECT_TRUE(model.getSvProto().getGroups().empty());
    EXPECT_TRUE(model.getGooseProto().getGroups().empty());
}

TEST_F(PackageListModelTest, AnyEntryInAFilterListHidesThatWholeProtocol) {
    groupFilter.svs.push_back(TavIec61850::SvIdentifer{});
    update();
    EXPECT_TRUE(model.getSvProto().getGroups().empty());
    EXPECT_EQ(model.getGooseProto().getGroups().size(), 2u);

    groupFilter.svs.clear();
    groupFilter.gooses.push_back(TavIec61850::GooseIdentifer{});
    update();
    EXPECT_EQ(model.getSvProto().getGroups().size(), 1u);
    EXPECT_TRUE(model.getGooseProto().getGroups().empty());
}

TEST_F(PackageListModelTest, SelectEmitsEveryTimeAndUpdateClearsIt) {
    update();
    events.clear();
    const IGroup* group = model.getSvProto().getGroups().getItems()[0].get();
    model.select(group);
    model.select(group);
    model.select(nullptr);
    EXPECT_EQ(events, (std::vector<std::string>{"group", "group", "group:none"}));

    model.select(group);
    update();
    EXPECT_EQ(model.getSelectedGroup(), nullptr);
}

TEST_F(PackageListModelTest, TickClimbsEveryLevelOnceEvenAfterRebuilds) {
    update();
    update(); // the first tree's connections must have gone with it
    SvGroup& group = *model.getSvProto().getGroups().getItems()[0];
    SvChannel& channel = group.getChannels().add(std::make_unique<SvChannel>());

    // A listener added now runs after the tree's own relay on that level, so
    // the top hears of the tick first; what matters is that every level does,
    // once, before setSelected returns.
    std::map<std::string, int> hops;
    channel.signalSelected.connect([&](SvChannel*) { ++hops["channel"]; });
    group.getChannels().signalChannelSelected.connect([&](SvChannel*) { ++hops["channels"]; });
    group.signalChannelSelected.connect([&](SvChannel*, SvGroup*) { ++hops["group"]; });
    model.getSvProto().getGroups().signalChannelSelected.connect(
        [&](SvChannel*, SvGroup*) { ++hops["groups"]; });
    model.getSvProto().signalChannelSelected.connect(
        [&](SvChannel*, SvGroup*) { ++hops["proto"]; });
    events.clear();

    channel.setSelected(true);
    EXPECT_EQ(hops,
              (std::map<std::string, int>{
                  {"channel", 1}, {"channels", 1}, {"group", 1}, {"groups", 1}, {"proto", 1}}));
    EXPECT_EQ(events, (std::vector<std::string>{"sv+"}));
    EXPECT_EQ(lastSv, &channel);
    EXPECT_EQ(lastSvGroup, &group);
    EXPECT_TRUE(channel.isSelected());

    // Ticking a ticked channel is news again.
    channel.setSelected(true);
    channel.setSelected(false);
    EXPECT_EQ(events, (std::vector<std::string>{"sv+", "sv+", "sv-"}));
    EXPECT_FALSE(channel.isSelected());
}

TEST_F(PackageListModelTest, GooseTicksReachTheirOwnSignals) {
    update();
    GooseGroup& group = *model.getGooseProto().getGroups().getItems()[1];
    GooseChannel& first = group.getChannels().add(std::make_unique<GooseChannel>());
    GooseChannel& second = group.getChannels().add(std::make_unique<GooseChannel>());
    events.clear();

    second.setSelected(true);
    first.setSelected(false);
    EXPECT_EQ(events, (std::vector<std::string>{"goose+", "goose-"}));
    EXPECT_EQ(lastGoose, &second);
    EXPECT_EQ(lastGooseGroup, &group);
    EXPECT_EQ(second.getSerie().kind, Tav::Series::Discrete);
    EXPECT_EQ(group.getChannels().getItems()[1].get(), &second);
}

TEST(StreamTree, DestroyingTickedChannelsEmitsNothing) {
    int seen = 0;
    {
        SvProto proto;
        proto.signalChannelSelected.connect([&](SvChannel*, SvGroup*) { ++seen; });
        proto.signalChannelUnSelected.connect([&](SvChannel*, SvGroup*) { ++seen; });
        SvGroup& group = proto.getGroups().add(std::make_unique<SvGroup>());
        group.getChannels().add(std::make_unique<SvChannel>()).setSelected(true);
        EXPECT_EQ(seen, 1);
    }
    EXPECT_EQ(seen, 1);
}

} // namespace
