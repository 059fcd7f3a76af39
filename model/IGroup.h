#pragma once

namespace TavNA {

// A stream of either protocol, as a handle of the picked one; holders tell the
// kind by its dynamic type.
class IGroup {
public:
    virtual ~IGroup() = default;
};

} // namespace TavNA
