#include "presenter/MeasurementSheet.h"

#include "model/SvChannel.h"

#include <cmath>
#include <cstdio>

namespace TavNA {

namespace {

using namespace TavMeasure;

std::string format(const char* pattern, double value) {
    char text[64];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}

const char* unitOf(const ChannelSpec& spec) {
    return spec.quantity == Quantity::Voltage ? "В" : "А";
}

// No "-0.00°": a phasor a hair before the reference is at it.
std::string angleText(double degrees) {
    return format("%.2f°", std::fabs(degrees) < 0.005 ? 0.0 : degrees);
}

std::string percentText(const std::optional<double>& value) {
    return value ? format("%.2f %%", *value) : "—";
}

std::uint32_t colourOf(Phase phase) {
    Tav::Series series;
    SvChannelTraits::applyPhase(static_cast<TavCalculate::Phase>(phase), series);
    return series.color;
}

std::string labelled(const std::string& name, const std::string& svId, bool several) {
    return several ? name + " | " + svId : name;
}

void addSequence(MeasurementSheet& sheet, const std::string& name,
                 const std::optional<SequenceComponents>& s, const char* unit) {
    if (!s)
        return;
    const auto phasor = [&](const Phasor& p) {
        return withUnit(p.rms, unit) + " ∠ " + angleText(p.angleDeg);
    };
    sheet.sequences.push_back({name, phasor(s->positive), phasor(s->negative), phasor(s->zero),
                               format("%.2f %%", s->unbalance)});
}

void addPower(MeasurementSheet& sheet, const std::optional<ThreePhasePower>& power,
              const std::string& svId, bool several) {
    if (!power)
        return;
    const auto row = [&](const std::string& name, const PowerFigures& f) {
        sheet.power.push_back({labelled(name, svId, several), withUnit(f.p, "Вт"),
                               withUnit(f.q, "вар"), withUnit(f.s, "В·А"), format("%.4f", f.pf)});
    };
    const char* phases[] = {"A", "B", "C"};
    for (std::size_t k = 0; k < 3; ++k)
        row(phases[k], power->phases[k]);
    row("Сумма", power->total);
}

} // namespace

std::string withUnit(double value, const std::string& unit) {
    static const char* prefixes[] = {"", "к", "М", "Г"};
    std::size_t p = 0;
    double shown = value;
    while (std::fabs(shown) >= 1000.0 && p + 1 < std::size(prefixes)) {
        shown /= 1000.0;
        ++p;
    }
    const double magnitude = std::fabs(shown);
    const char* pattern = magnitude >= 100 ? "%.1f" : magnitude >= 10 ? "%.2f" : "%.3f";
    return format(pattern, magnitude < 0.0005 ? 0.0 : shown) + " " + prefixes[p] + unit;
}

std::string cyclesText(std::size_t cycles, double seconds) {
    const std::size_t lastTwo = cycles % 100, last = cycles % 10;
    const char* word = (lastTwo >= 11 && lastTwo <= 14) ? "периодов"
                       : last == 1                      ? "период"
                       : (last >= 2 && last <= 4)       ? "периода"
                                                        : "периодов";
    const std::string span =
        seconds < 1.0 ? format("%.0f мс", seconds * 1e3) : format("%.2f с", seconds);
    return std::to_string(cycles) + " " + word + ", " + span;
}

MeasurementSheet makeSheet(const std::vector<StreamMeasurement>& measured) {
    MeasurementSheet sheet;
    if (measured.empty() || measured.front().cycles == 0) {
        sheet.heading = "Нет целого периода для измерения";
        return sheet;
    }
    const StreamMeasurement& first = measured.front();
    sheet.heading = cyclesText(first.cycles, static_cast<double>(first.toNs - first.fromNs) / 1e9) +
                    ", " + format("%.3f Гц", first.frequencyHz) + ", опорный " + first.reference;
    const bool several = measured.size() > 1;
    for (const StreamMeasurement& m : measured) {
        for (const ChannelMeasurement& c : m.channels) {
            const std::string name = labelled(c.spec.name, m.svId, several);
            const char* unit = unitOf(c.spec);
            sheet.channels.push_back(
                {name, withUnit(c.rms, unit), withUnit(c.fundamental.rms, unit),
                 angleText(c.fundamental.angleDeg), percentText(c.thd), withUnit(c.dc, unit)});
            if (c.spec.phase != Phase::N)
                sheet.phasors.push_back({name + " " + withUnit(c.fundamental.rms, unit),
                                         c.fundamental.rms, c.fundamental.angleDeg,
                                         colourOf(c.spec.phase),
                                         c.spec.quantity == Quantity::Voltage});
            sheet.harmonics.push_back({name, c.harmonics});
        }
        addSequence(sheet, labelled("Токи", m.svId, several), m.current, "А");
        addSequence(sheet, labelled("Напряжения", m.svId, several), m.voltage, "В");
        addPower(sheet, m.power, m.svId, several);
    }
    return sheet;
}

} // namespace TavNA
