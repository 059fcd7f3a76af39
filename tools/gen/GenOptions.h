#pragma once

#include "tools/gen/Scenario.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace TavGen {

// Wrong usage: exit code 2 and the usage text.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct GenRequest {
    bool help = false;
    std::string demoDir; // set for --demo
    std::string out;
    Scenario scenario;
    std::string sclOut; // the configuration of what is written, when set
    std::vector<std::string> sclMismatches;
};

GenRequest parseArguments(const std::vector<std::string>& args);
const char* usageText();

// "12", "12.5", "1700000000.000250" -> nanoseconds, exactly (no detour via double).
std::uint64_t parseSeconds(const std::string& text);

} // namespace TavGen
