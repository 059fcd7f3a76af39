#include "health/HealthCounts.h"

#include <map>

namespace TavHealth {

std::vector<NamedCount> healthCounts(const StreamHealth& h) {
    std::vector<NamedCount> c{{"lan_duplicates", h.lanDuplicates, false},
                              {"lan_unpaired", h.lanUnpaired, true},
                              {"unreadable_frames", h.unreadableFrames, true}};
    if (h.sv) {
        const SvHealth& s = *h.sv;
        ChannelQuality q;
        for (const auto& ch : s.quality) {
            q.invalid += ch.invalid;
            q.questionable += ch.questionable;
            q.test += ch.test;
            q.derived += ch.derived;
            q.operatorBlocked += ch.operatorBlocked;
        }
        c.insert(c.end(), {{"smpcnt_duplicates", s.smpcntDuplicates, true},
                           {"smpcnt_discontinuities", s.smpcntDiscontinuities, true},
                           {"missing_samples", s.missingSamples, true},
                           {"smpsynch_changes", s.smpsynchChanges, true},
                           {"simulated_frames", h.simulatedFrames, true},
                           {"invalid_samples", q.invalid, true},
                           {"questionable_samples", q.questionable, true},
                           {"test_samples", q.test, true},
                           {"derived_samples", q.derived, true},
                           {"operator_blocked_samples", q.operatorBlocked, true},
                           {"late_frames", s.transfer.lateFrames, true}});
        if (s.configuredAsdus)
            c.push_back({"frames_off_configured_asdus", s.framesOffConfiguredAsdus, true});
    }
    if (h.goose) {
        const GooseHealth& g = *h.goose;
        c.insert(c.end(), {{"state_changes", g.stateChanges, false},
                           {"stnum_regressions", g.stnumRegressions, true},
                           {"sqnum_gaps", g.sqnumGaps, true},
                           {"sqnum_repeats", g.sqnumRepeats, true},
                           {"sqnum_not_reset", g.sqnumNotReset, true},
                           {"tal_expiries", g.talExpiries, true},
                           {"simulated_frames", h.simulatedFrames, true},
                           {"ndscom_frames", g.ndscomFrames, true}});
    }
    return c;
}

std::string labelOf(std::string_view key) {
    static const std::map<std::string_view, const char*> labels{
        {"frames", "кадры"},
        {"lan_duplicates", "копии из другой сети"},
        {"lan_unpaired", "кадры без копии из другой сети"},
        {"unreadable_frames", "нечитаемые кадры"},
        {"smpcnt_duplicates", "повторы smpCnt"},
        {"smpcnt_discontinuities", "разрывы smpCnt"},
        {"missing_samples", "пропущенные выборки"},
        {"smpsynch_changes", "смены smpSynch"},
        {"smpsynch", "смена smpSynch"},
        {"simulated_frames", "кадры имитации"},
        {"invalid_samples", "недостоверные выборки"},
        {"questionable_samples", "сомнительные выборки"},
        {"test_samples", "выборки в режиме испытаний"},
        {"derived_samples", "расчётные выборки"},
        {"operator_blocked_samples", "выборки, блокированные оператором"},
        {"quality", "качество"},
        {"late_frames", "опоздавшие кадры"},
        {"frames_off_configured_asdus", "кадры с числом ASDU не по SCL"},
        {"state_changes", "смены состояния"},
        {"stnum_regressions", "возвраты stNum"},
        {"sqnum_gaps", "пропуски sqNum"},
        {"sqnum_repeats", "повторы sqNum"},
        {"sqnum_not_reset", "sqNum не сброшен"},
        {"tal_expiries", "истечения timeAllowedtoLive"},
        {"ndscom_frames", "кадры с ndsCom"}};
    const auto found = labels.find(key);
    return found == labels.end() ? std::string(key) : found->second;
}

namespace {

std::string countsText(const StreamHealth& health, bool remarks, const char* separator,
                       bool labelled) {
    std::string text;
    for (const auto& c : healthCounts(health)) {
        if (c.remark != remarks || c.value == 0)
            continue;
        if (!text.empty())
            text += ", ";
        text += (labelled ? labelOf(c.name) : c.name) + separator + std::to_string(c.value);
    }
    return text;
}

} // namespace

std::string remarksText(const StreamHealth& health) {
    return countsText(health, true, " ", false);
}

std::string notesText(const StreamHealth& health) {
    return countsText(health, false, " ", false);
}

std::string remarksLabelled(const StreamHealth& health) {
    return countsText(health, true, ": ", true);
}

} // namespace TavHealth
