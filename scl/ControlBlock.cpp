#include "scl/SclModel.h"

namespace TavScl {

namespace {

// SV channels are the values; each value's quality travels beside it and is
// no channel of its own.
bool isValue(const LeafAttribute& leaf) {
    return leaf.bType != "Quality";
}

// Calls `use(name, member)` for each channel of the block in order.
template <typename Use> void eachChannel(const ControlBlock& c, Use use) {
    if (!c.dataSet)
        return;
    for (const Fcda& m : c.dataSet->members) {
        if (c.kind == ControlKind::Goose || m.leaves.empty()) {
            use(m.name, m);
            continue;
        }
        std::size_t values = 0;
        for (const LeafAttribute& leaf : m.leaves)
            values += isValue(leaf) ? 1 : 0;
        if (values == 1) {
            use(m.name, m);
            continue;
        }
        for (const LeafAttribute& leaf : m.leaves)
            if (isValue(leaf))
                use(leaf.name, m);
    }
}

} // namespace

const char* kindName(ControlKind kind) {
    return kind == ControlKind::Sv ? "SV" : "GOOSE";
}

std::vector<std::string> ControlBlock::channelNames() const {
    std::vector<std::string> names;
    eachChannel(*this, [&](const std::string& name, const Fcda&) { names.push_back(name); });
    return names;
}

std::vector<std::string> ControlBlock::channelDescriptions() const {
    std::vector<std::string> descriptions;
    eachChannel(
        *this, [&](const std::string&, const Fcda& m) { descriptions.push_back(m.lnDescription); });
    return descriptions;
}

} // namespace TavScl
