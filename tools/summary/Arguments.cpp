#include "tools/summary/Arguments.h"

#include <charconv>

namespace TavInspect {

const std::string& optionValue(const std::vector<std::string>& args, std::size_t& i) {
    if (++i >= args.size())
        throw Usage(args[i - 1] + " needs a value");
    return args[i];
}

std::size_t parseCount(const std::string& text) {
    std::size_t value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size())
        throw Usage("not a number: " + text);
    return value;
}

TavIec61850Parser::Timest parseSeconds(const std::string& text) {
    const auto dot = text.find('.');
    const std::string whole = text.substr(0, dot);
    std::string fraction = dot == std::string::npos ? "" : text.substr(dot + 1);
    if (whole.empty() || fraction.size() > 9 || (dot != std::string::npos && fraction.empty()))
        throw Usage("not a time in seconds: " + text);
    const std::size_t s = parseCount(whole);
    if (s > 0xFFFFFFFFu)
        throw Usage("not a time in seconds: " + text);
    fraction.resize(9, '0');
    return {static_cast<std::uint32_t>(s), static_cast<std::uint32_t>(parseCount(fraction))};
}

} // namespace TavInspect
