#pragma once

#include "platform/parser/Timest.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace TavInspect {

// Wrong use of the command line: the usage is printed with it.
class Usage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The value after the option at `i`, which moves on to it.
const std::string& optionValue(const std::vector<std::string>& args, std::size_t& i);
std::size_t parseCount(const std::string& text);
// "1700000000.000250" exactly, as --json prints times.
TavIec61850Parser::Timest parseSeconds(const std::string& text);

} // namespace TavInspect
