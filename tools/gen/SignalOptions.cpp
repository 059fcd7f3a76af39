#include "tools/gen/SignalOptions.h"

#include "tools/gen/GenOptions.h"

#include <array>
#include <sstream>

namespace TavGen {

namespace {

double number(const std::string& option, const std::string& text) {
    try {
        std::size_t used = 0;
        const double value = std::stod(text, &used);
        if (used == text.size())
            return value;
    } catch (const std::exception&) {
    }
    throw UsageError(option + " takes numbers, not '" + text + "'");
}

std::array<double, 3> threeNumbers(const std::string& option, const std::string& text) {
    std::array<double, 3> values{};
    std::istringstream list(text);
    std::string item;
    std::size_t k = 0;
    for (; std::getline(list, item, ','); ++k) {
        if (k >= 3)
            break;
        values[k] = number(option, item);
    }
    if (k != 3 || std::getline(list, item))
        throw UsageError(option + " takes three numbers A,B,C, not '" + text + "'");
    return values;
}

Harmonic harmonic(const std::string& option, const std::string& text) {
    const auto colon = text.find(':');
    if (colon == std::string::npos)
        throw UsageError(option + " takes ORDER:PERCENT, not '" + text + "'");
    const double order = number(option, text.substr(0, colon));
    if (order < 2 || order > 100 || order != static_cast<unsigned>(order))
        throw UsageError(option + " takes an order from 2 to 100, not '" + text + "'");
    return {static_cast<unsigned>(order), number(option, text.substr(colon + 1))};
}

} // namespace

bool applySignalValue(SvSignal& signal, const std::string& name, const std::string& value) {
    if (name == "--harmonic")
        signal.harmonics.push_back(harmonic(name, value));
    else if (name == "--phase-angles")
        signal.phaseAnglesDeg = threeNumbers(name, value);
    else if (name == "--phase-amplitudes")
        signal.phaseAmplitudes = threeNumbers(name, value);
    else if (name == "--current-lag")
        signal.currentLagDeg = number(name, value);
    else if (name == "--noise")
        signal.noise = number(name, value);
    else
        return false;
    return true;
}

} // namespace TavGen
