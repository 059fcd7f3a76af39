#pragma once

#include <cstdint>
#include <string>

namespace Tav {

// A plotted fragment as a legend shows it.
class IFragmentable {
public:
    virtual ~IFragmentable() = default;
    // Bytes in memory: red, green, blue, alpha.
    virtual std::uint32_t getFragmentableColor() const = 0;
    virtual std::string getFragmentableDescription() const = 0;
};

} // namespace Tav
