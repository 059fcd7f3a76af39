#pragma once

#include "model/GooseProto.h"
#include "model/GroupFilter.h"
#include "model/IGroup.h"
#include "model/SvProto.h"
#include "platform/parser/Filter.h"
#include "platform/parser/StreamRecords.h"

#include <memory>
#include <sigc++/signal.h>

namespace TavNA {

// The stream tree built from the capture database, the stream the user picked,
// and the one place where the panels learn of rebuilds, picks and ticks.
// Every group points into the database, so the database must not change
// between one update and the next.
class PackageListModel {
public:
    PackageListModel();
    PackageListModel(const PackageListModel&) = delete;
    PackageListModel& operator=(const PackageListModel&) = delete;
    ~PackageListModel();

    // Emits even when the same stream is picked again.
    void select(const IGroup* group);
    // Throws the whole tree away and builds one group per stream record. The
    // packet filter was already applied by the parser and is not looked at.
    void update(TavIec61850Parser::Db& db, TavIec61850Parser::Filter& filter,
                GroupFilter& groupFilter);

    SvProto& getSvProto() { return *svProto; }
    const SvProto& getSvProto() const { return *svProto; }
    GooseProto& getGooseProto() { return *gooseProto; }
    const GooseProto& getGooseProto() const { return *gooseProto; }
    const IGroup* getSelectedGroup() const { return selectedGroup; }

private:
    std::unique_ptr<SvProto> svProto;
    std::unique_ptr<GooseProto> gooseProto;

public:
    sigc::signal<void()> signalUpdated;
    sigc::signal<void(const IGroup*)> signalGroupSelected;
    sigc::signal<void(SvChannel*, SvGroup*)> signalSvChannelSelected;
    sigc::signal<void(SvChannel*, SvGroup*)> signalSvChannelUnSelected;
    sigc::signal<void(GooseChannel*, GooseGroup*)> signalGooseChannelSelected;
    sigc::signal<void(GooseChannel*, GooseGroup*)> signalGooseChannelUnSelected;

private:
    void _onSvChannelSelected(SvChannel* channel, SvGroup* group);
    void _onSvChannelUnSelected(SvChannel* channel, SvGroup* group);
    void _onGooseChannelSelected(GooseChannel* channel, GooseGroup* group);
    void _onGooseChannelUnSelected(GooseChannel* channel, GooseGroup* group);

    const IGroup* selectedGroup = nullptr;
};

} // namespace TavNA
