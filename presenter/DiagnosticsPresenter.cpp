#include "presenter/DiagnosticsPresenter.h"

#include "health/HealthCounts.h"
#include "model/FailureText.h"
#include "model/GooseGroup.h"
#include "model/SvGroup.h"
#include "presenter/StreamOrder.h"
#include "scl/StreamMatch.h"

#include <cmath>
#include <cstdio>
#include <sigc++/functors/mem_fun.h>

namespace TavNA {

namespace {

// The rate and ASDUs the configuration gives the stream, where an SCL file
// describes it.
TavHealth::SvNominal nominalOf(const SclConfiguration& scl, const TavIec61850Parser::Sv& sv) {
    TavHealth::SvNominal nominal;
    const auto match = scl.check(sv);
    if (!match)
        return nominal;
    if (match->control->smpRate)
        nominal.samplesPerSecond = TavScl::configuredRates(*match->control);
    nominal.asdusPerFrame = match->control->nofAsdu;
    return nominal;
}

std::string asdusText(const TavHealth::SvHealth& sv) {
    std::string text = std::to_string(sv.asdusPerFrame);
    if (sv.configuredAsdus && *sv.configuredAsdus != sv.asdusPerFrame)
        text += " (в SCL " + std::to_string(*sv.configuredAsdus) + ")";
    return text;
}

const char* const kNoRemarks = "нет замечаний";
const char* const kChecking = "проверяется…";

std::string decimal(double value, const char* format) {
    char text[48];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

} // namespace

DiagnosticsPresenter::DiagnosticsPresenter(TavNaModel& model, MoveWindow moveWindow)
    : model(model), moveWindow(std::move(moveWindow)), view(std::make_unique<DiagnosticsView>()),
      liveness(Tav::UpdateViewGuard::makeToken()) {
    PackageListModel& packages = model.getPackageListModel();
    const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken> alive = liveness;
    CurrentLoad& load = model.getLoad();
    connections.push_back(packages.signalUpdated.connect(
        [this, alive, &load] { load.deliver(alive, [this] { _onTreeUpdated(); }); }));
    connections.push_back(packages.signalGroupSelected.connect(
        sigc::mem_fun(*this, &DiagnosticsPresenter::_onGroupSelected)));
    // Each of these is about to change the database the checks read.
    connections.push_back(load.signalBegun.connect([this] { _stop(); }));
    connections.push_back(model.signalResetting.connect([this] { _stop(); }));
    connections.push_back(
        model.getFileManagerModel().signalBeforeRemoved.connect([this](auto*) { _stop(); }));
    // A configuration opened says what the streams should send: checked again.
    connections.push_back(model.getScl().signalChanged.connect([this] { _recheck(); }));
    connections.push_back(view->signalEventActivated.connect(
        sigc::mem_fun(*this, &DiagnosticsPresenter::_onEventActivated)));
    _refresh();
}

DiagnosticsPresenter::~DiagnosticsPresenter() {
    for (auto& c : connections)
        c.disconnect();
    worker.stop();
}

void DiagnosticsPresenter::_stop() {
    worker.stop();
    ++run;
}

// Runs on the interface thread with the parse over: the tree and the database
// stay as they are until the next parse, reset or removal stops the worker.
void DiagnosticsPresenter::_onTreeUpdated() {
    _stop();
    entries.clear();
    picked = nullptr;
    PackageListModel& packages = model.getPackageListModel();
    // In the stream list's order, so that a stream is found where it is there.
    for (auto* group : inListOrder(packages.getSvProto().getGroups().getItems())) {
        if (group->getSvs().empty())
            continue;
        const auto* sv = group->getSvs().front();
        entries.push_back({group, {sv, nullptr, nullptr, {}}, "SV " + sv->svId, nullptr, {}});
    }
    for (auto* group : inListOrder(packages.getGooseProto().getGroups().getItems())) {
        if (group->getGooses().empty())
            continue;
        const auto* goose = group->getGooses().front();
        const std::string& name = goose->goId.empty() ? goose->gocbRef : goose->goId;
        entries.push_back({group, {nullptr, goose, nullptr, {}}, "GOOSE " + name, nullptr, {}});
    }
    _check();
    _refresh();
}

void DiagnosticsPresenter::_recheck() {
    _stop();
    for (auto& entry : entries) {
        entry.health = nullptr;
        entry.error.clear();
    }
    _check();
    _refresh();
}

// The picked stream goes first; those already checked are not checked again.
void DiagnosticsPresenter::_check() {
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const bool done = entries[i].health || !entries[i].error.empty();
        if (done)
            continue;
        if (entries[i].group == picked)
            order.insert(order.begin(), i);
        else
            order.push_back(i);
    }
    if (order.empty())
        return;
    std::vector<TavHealth::HealthTarget> targets;
    for (std::size_t i : order)
        targets.push_back(entries[i].target);
    for (auto& target : targets) {
        target.clocks = model.getClocks();
        if (target.sv != nullptr)
            target.nominal = nominalOf(model.getScl(), *target.sv);
    }
    const std::weak_ptr<Tav::UpdateViewGuard::LifetimeToken> alive = liveness;
    const std::uint64_t thisRun = run;
    worker.start(std::move(targets), [this, alive, thisRun,
                                      order](std::size_t i,
                                             std::shared_ptr<const TavHealth::StreamHealth> health,
                                             const std::string& error) {
        Tav::UpdateViewGuard::safeBeginUpdateView(alive,
                                                  [this, thisRun, entry = order[i], health, error] {
                                                      _onChecked(thisRun, entry, health, error);
                                                  });
    });
}

void DiagnosticsPresenter::_onChecked(std::uint64_t of, std::size_t entry,
                                      std::shared_ptr<const TavHealth::StreamHealth> health,
                                      const std::string& error) {
    if (of != run || entry >= entries.size())
        return;
    entries[entry].health = std::move(health);
    entries[entry].error = error.empty() && !entries[entry].health ? "?" : error;
    if (picked == nullptr || entries[entry].group == picked)
        _refresh();
}

// A clearing from the worker comes with the rebuild, which clears the pick
// itself.
void DiagnosticsPresenter::_onGroupSelected(const IGroup* group) {
    if (!model.getLoad().isInterfaceThread())
        return;
    picked = group;
    const Entry* entry = _picked();
    if (entry != nullptr && !entry->health && entry->error.empty() && worker.running()) {
        _stop();
        _check();
    }
    _refresh();
}

const DiagnosticsPresenter::Entry* DiagnosticsPresenter::_picked() const {
    for (const auto& e : entries)
        if (picked != nullptr && e.group == picked)
            return &e;
    return nullptr;
}

std::string DiagnosticsPresenter::_verdict(const Entry& entry) const {
    if (!entry.error.empty())
        return "не проверен: " + FailureText::reason(entry.error);
    if (!entry.health)
        return kChecking;
    const std::string remarks = TavHealth::remarksLabelled(*entry.health);
    return remarks.empty() ? kNoRemarks : remarks;
}

// Seconds on the oscillograph's axis, which starts at the earliest open file.
// Whole seconds are taken apart first: a time near 1.7e9 s as one double keeps
// only a few tenths of a microsecond.
double DiagnosticsPresenter::_axisSeconds(const TavIec61850Parser::Timest& t) const {
    const double start = model.getOscillographModel().start;
    const double whole = std::floor(start);
    return (static_cast<double>(t.seconds) - whole) + t.nanoseconds / 1e9 - (start - whole);
}

void DiagnosticsPresenter::_onEventActivated(std::size_t index) {
    const Entry* entry = _picked();
    if (entry == nullptr || !entry->health || index >= entry->health->events.size())
        return;
    const double at = _axisSeconds(entry->health->events[index].time);
    moveWindow(at - 0.05, at + 0.05);
}

void DiagnosticsPresenter::_refresh() {
    const Entry* entry = _picked();
    std::vector<DiagnosticsLine> lines;
    if (entry == nullptr) {
        for (const auto& e : entries)
            lines.push_back({e.title, _verdict(e)});
        view->show("Все потоки", lines, lines.size());
        return;
    }
    const std::string heading = entry->title + ": " + _verdict(*entry);
    if (!entry->health) {
        view->show(heading, lines, 0);
        return;
    }
    const TavHealth::StreamHealth& h = *entry->health;
    lines.push_back({TavHealth::labelOf("frames"), std::to_string(h.frames)});
    for (const auto& c : TavHealth::healthCounts(h))
        lines.push_back({TavHealth::labelOf(c.name), std::to_string(c.value)});
    if (h.sv) {
        std::string wrap = std::to_string(h.sv->smpcntWrap);
        if (h.sv->nominalWrap)
            wrap += " (номинально " + std::to_string(*h.sv->nominalWrap) + ")";
        std::string synch;
        for (auto v : h.sv->smpsynchValues)
            synch += (synch.empty() ? "" : ", ") + std::to_string(v);
        lines.insert(lines.end(),
                     {{"период smpCnt", wrap},
                      {"частота выборок", decimal(h.sv->sampleRate, "%.1f Гц")},
                      {"ASDU в кадре", asdusText(*h.sv)},
                      {"значения smpSynch", synch},
                      {"интервал кадров",
                       "медиана " + decimal(h.sv->timing.median * 1e3, "%.3f") + " мс, 99 % " +
                           decimal(h.sv->timing.p99 * 1e3, "%.3f") + " мс, наибольший " +
                           decimal(h.sv->timing.largest * 1e3, "%.3f") + " мс"}});
        lines.push_back({"время передачи",
                         "медиана " + decimal(h.sv->transfer.median * 1e3, "%.3f") + " мс, 99 % " +
                             decimal(h.sv->transfer.p99 * 1e3, "%.3f") + " мс, наибольшее " +
                             decimal(h.sv->transfer.largest * 1e3, "%.3f") + " мс"});
    }
    if (h.goose) {
        std::string revs;
        for (auto v : h.goose->confRevs)
            revs += (revs.empty() ? "" : ", ") + std::to_string(v);
        lines.push_back({"значения confRev", revs});
    }
    if (h.eventCount > h.events.size())
        lines.push_back({"события", "показаны первые " + std::to_string(h.events.size()) + " из " +
                                        std::to_string(h.eventCount)});
    const std::size_t firstEvent = lines.size();
    for (const auto& e : h.events)
        lines.push_back(
            {decimal(_axisSeconds(e.time), "%.6f с"), TavHealth::labelOf(e.kind) + ": " + e.text});
    view->show(heading, lines, firstEvent);
}

} // namespace TavNA
