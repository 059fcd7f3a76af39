#include "presenter/MeasurementPresenter.h"

#include "model/MeasureChannels.h"
#include "presenter/OscillographPresenter.h"

#include <algorithm>
#include <cmath>

namespace TavNA {

namespace {

using namespace TavMeasure;

// Measured at once up to this; longer windows on the background job.
constexpr double kAtOnceSeconds = 1.0;
constexpr std::int64_t kSecondNs = 1'000'000'000;

std::string channelName(const ChannelSpec& spec, const std::string& svId, bool several) {
    return several ? spec.name + " | " + svId : spec.name;
}

} // namespace

MeasurementPresenter::MeasurementPresenter(TavNaModel& model, OscillographPresenter& scope)
    : model(model), scope(scope), view(std::make_unique<MeasurementView>()),
      liveness(Tav::UpdateViewGuard::makeToken()) {
    CurrentLoad& load = model.getLoad();
    const std::weak_ptr<void> owner = liveness;
    job = std::make_unique<TavJob::BackgroundJob>(
        [&load, owner](TavJob::BackgroundJob::Task task) { load.post(owner, std::move(task)); });
    PackageListModel& packages = model.getPackageListModel();
    connections.push_back(packages.signalGroupSelected.connect(
        sigc::mem_fun(*this, &MeasurementPresenter::_onGroupSelected)));
    connections.push_back(
        packages.signalSvChannelSelected.connect([this](auto*, auto*) { _schedule(); }));
    connections.push_back(
        packages.signalSvChannelUnSelected.connect([this](auto*, auto*) { _schedule(); }));
    connections.push_back(packages.signalUpdated.connect([this, &load, owner] {
        load.deliver(owner, [this] {
            picked = nullptr;
            _schedule();
        });
    }));
    // Each of these is about to change the database the measurement reads,
    // or to free the stream tree the pick points into. The figures shown stay
    // until the new tree is measured: a live capture reads a batch a second.
    const auto stopAll = [this] {
        _stop();
        picked = nullptr;
    };
    connections.push_back(load.signalBegun.connect(stopAll));
    connections.push_back(model.signalResetting.connect(stopAll));
    connections.push_back(
        model.getFileManagerModel().signalBeforeRemoved.connect([stopAll](auto*) { stopAll(); }));
    connections.push_back(
        scope.getViewObj().signalSeriesRangeChanged.connect([this](float, float) { _schedule(); }));
    connections.push_back(view->signalReferenceChosen.connect([this] {
        const int row = view->referenceChoice();
        if (row >= 0)
            chosenReference = view->referenceNames().at(static_cast<std::size_t>(row));
        _schedule();
    }));
    connections.push_back(view->signalHarmonicChosen.connect([this] {
        const int row = view->harmonicChoice();
        if (row >= 0 && static_cast<std::size_t>(row) < sheet.harmonics.size())
            chosenHarmonics = sheet.harmonics[static_cast<std::size_t>(row)].channel;
        _showHarmonics();
    }));
    _showNothing("");
}

MeasurementPresenter::~MeasurementPresenter() {
    for (auto& c : connections)
        c.disconnect();
    job->stop();
}

void MeasurementPresenter::_stop() {
    job->stop();
    measuring = false;
}

// A clearing from the worker comes with the rebuild, which clears the pick itself.
void MeasurementPresenter::_onGroupSelected(const IGroup* group) {
    if (!model.getLoad().isInterfaceThread())
        return;
    picked = dynamic_cast<const SvGroup*>(group);
    _schedule();
}

// A zoom gesture moves the window many times a frame: one measurement follows.
void MeasurementPresenter::_schedule() {
    if (scheduled)
        return;
    scheduled = true;
    Tav::UpdateViewGuard::safeBeginUpdateView(liveness, [this] {
        scheduled = false;
        _measure();
    });
}

// The stream's channels, named by the configuration's data set where an SCL
// file describes the stream, as the stream list names them.
std::vector<ChannelSpec>
MeasurementPresenter::_channels(const TavIec61850Parser::Sv& stream) const {
    auto channels = measureChannels(stream);
    const auto configured = model.getScl().channelNames(stream);
    for (auto& spec : channels)
        if (spec.index < configured.size() && !configured[spec.index].empty())
            spec.name = configured[spec.index];
    return channels;
}

std::vector<MeasurementPresenter::Target> MeasurementPresenter::_targets() const {
    std::vector<Target> targets;
    if (picked != nullptr && !picked->getSvs().empty()) {
        const auto* stream = picked->getSvs().front();
        targets.push_back({stream, _channels(*stream)});
    }
    for (const auto& [channel, group] : scope.getSvSelection()) {
        if (group == picked || group->getSvs().empty())
            continue;
        const auto* stream = group->getSvs().front();
        auto found = std::find_if(targets.begin(), targets.end(),
                                  [&](const Target& t) { return t.stream == stream; });
        if (found == targets.end())
            found = targets.insert(targets.end(), Target{stream, {}});
        for (const auto& spec : _channels(*stream))
            if (spec.index == channel->getIndex())
                found->channels.push_back(spec);
    }
    return targets;
}

// The visible window; shorter than a cycle, the cycles about the cursor (or
// the window's middle when the pointer is elsewhere).
std::pair<std::int64_t, std::int64_t> MeasurementPresenter::_window() const {
    double from = 0, to = 0;
    scope.getViewObj().getSeriesRange(from, to);
    const double start = model.getOscillographModel().start;
    auto fromNs = static_cast<std::int64_t>(std::llround((start + from) * 1e9));
    auto toNs = static_cast<std::int64_t>(std::llround((start + to) * 1e9));
    constexpr std::int64_t cycleNs = kSecondNs / 45; // the longest cycle measured
    if (toNs - fromNs < cycleNs) {
        const auto cursor = scope.getViewObj().cursorTime();
        const std::int64_t middle =
            cursor && *cursor >= from && *cursor <= to
                ? static_cast<std::int64_t>(std::llround((start + *cursor) * 1e9))
                : fromNs + (toNs - fromNs) / 2;
        fromNs = middle - cycleNs;
        toNs = middle + cycleNs;
    }
    return {fromNs, toNs};
}

std::optional<ChannelRef> MeasurementPresenter::_reference(const std::vector<Target>& targets) {
    std::vector<std::string> names;
    std::vector<ChannelRef> refs;
    const bool several = targets.size() > 1;
    for (std::size_t s = 0; s < targets.size(); ++s)
        for (std::size_t c = 0; c < targets[s].channels.size(); ++c) {
            names.push_back(channelName(targets[s].channels[c], targets[s].stream->svId, several));
            refs.push_back({s, c});
        }
    auto chosen = std::find(names.begin(), names.end(), chosenReference.value_or(""));
    if (chosen == names.end() && !targets.empty()) {
        chosenReference.reset();
        chosen = names.begin() + static_cast<std::ptrdiff_t>(defaultReference(targets[0].channels));
    }
    view->setReferenceChoices(names, static_cast<std::size_t>(chosen - names.begin()));
    if (!chosenReference || chosen == names.end())
        return std::nullopt;
    return refs[static_cast<std::size_t>(chosen - names.begin())];
}

void MeasurementPresenter::_measure() {
    _stop();
    const auto targets = _targets();
    if (targets.empty()) {
        _showNothing("Выберите поток SV или отметьте его каналы");
        return;
    }
    if (targets.front().channels.empty()) {
        _showNothing("У потока нет значений для измерения");
        return;
    }
    const auto [fromNs, toNs] = _window();
    auto clocks = model.getClocks();
    std::vector<Target> work = targets;
    // Another stream's channel is a reference only for streams on one clock.
    std::optional<ChannelRef> reference = _reference(targets);
    const auto run = [work, fromNs, toNs, reference, clocks](const std::atomic<bool>* cancel,
                                                             const auto& progress) {
        std::vector<StreamInput> inputs;
        bool synchronised = true;
        for (const Target& t : work) {
            inputs.push_back({t.stream, &clocks->of(*t.stream), t.channels});
            synchronised = synchronised && inputs.back().clock->synchronised();
        }
        const auto ref =
            reference && (reference->stream == 0 || synchronised) ? reference : std::nullopt;
        return measure(inputs, fromNs, toNs, ref, cancel, progress);
    };
    if (static_cast<double>(toNs - fromNs) <= kAtOnceSeconds * 1e9 && clocks->ready()) {
        try {
            _show(run(nullptr, std::function<void(double)>{}));
        } catch (const std::exception& e) {
            _showNothing(e.what());
        }
        return;
    }
    measuring = true;
    view->setHeading("Измерение…");
    job->start<std::vector<StreamMeasurement>>(
        [run](const std::atomic<bool>& cancel, const TavJob::BackgroundJob::Progress& progress) {
            try {
                return run(&cancel, progress);
            } catch (const std::exception&) {
                return std::vector<StreamMeasurement>{};
            }
        },
        [this](std::vector<StreamMeasurement> measured) {
            measuring = false;
            _show(measured);
        },
        [this](double share) {
            view->setHeading("Измерение… " + std::to_string(static_cast<int>(share * 100)) + " %");
        });
}

void MeasurementPresenter::_show(const std::vector<StreamMeasurement>& measured) {
    showsNothing = false;
    sheet = makeSheet(measured);
    view->setHeading(sheet.heading);
    view->setTables(sheet.channels, sheet.sequences, sheet.power);
    view->setPhasors(sheet.phasors);
    _showHarmonics();
}

void MeasurementPresenter::_showHarmonics() {
    std::vector<std::string> names;
    std::size_t chosen = 0;
    for (std::size_t k = 0; k < sheet.harmonics.size(); ++k) {
        names.push_back(sheet.harmonics[k].channel);
        if (sheet.harmonics[k].channel == chosenHarmonics)
            chosen = k;
    }
    view->setHarmonicChoices(names, chosen);
    view->setHarmonics(chosen < sheet.harmonics.size() ? sheet.harmonics[chosen].percent
                                                       : std::vector<std::optional<double>>{});
}

// Loads come one after another: a panel already empty is left as it is,
// rather than laid out again for each.
void MeasurementPresenter::_showNothing(const std::string& why) {
    if (showsNothing && view->getHeading() == why)
        return;
    showsNothing = true;
    sheet = {};
    view->setHeading(why);
    view->setTables({}, {}, {});
    view->setPhasors({});
    view->setHarmonics({});
    view->setReferenceChoices({}, 0);
    view->setHarmonicChoices({}, 0);
}

} // namespace TavNA
