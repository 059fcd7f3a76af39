#include "health/HealthCounts.h"

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

namespace {

std::string countsText(const StreamHealth& health, bool remarks) {
    std::string text;
    for (const auto& c : healthCounts(health)) {
        if (c.remark != remarks || c.value == 0)
            continue;
        if (!text.empty())
            text += ", ";
        text += std::string(c.name) + ' ' + std::to_string(c.value);
    }
    return text;
}

} // namespace

std::string remarksText(const StreamHealth& health) {
    return countsText(health, true);
}

std::string notesText(const StreamHealth& health) {
    return countsText(health, false);
}

} // namespace TavHealth
