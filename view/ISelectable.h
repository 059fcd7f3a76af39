#pragma once

namespace TavNA {

// A stream entry that can be marked as the picked one and unmarked again.
class ISelectable {
public:
    virtual ~ISelectable() = default;
    virtual void select() = 0;
    virtual void unselect() = 0;
};

} // namespace TavNA
