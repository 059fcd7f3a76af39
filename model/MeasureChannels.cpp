#include "model/MeasureChannels.h"

#include "model/SvChannel.h"
#include "model/SvChannelNaming.h"

namespace TavNA {

std::vector<TavMeasure::ChannelSpec> measureChannels(const TavIec61850Parser::Sv& stream) {
    std::vector<TavMeasure::ChannelSpec> channels;
    for (std::size_t i = 0; i < stream.valuesPerAsdu; ++i) {
        const SvChannelLabel label = svChannelLabel(i, stream.valuesPerAsdu, stream.svId);
        Tav::Series scaled;
        SvChannelTraits::applySourceType(label.source, scaled);
        TavMeasure::ChannelSpec spec;
        spec.index = i;
        spec.name = label.name;
        spec.quantity = label.source == TavRelay::AnalogChannelSourceType::Voltage
                            ? TavMeasure::Quantity::Voltage
                            : TavMeasure::Quantity::Current;
        spec.phase = static_cast<TavMeasure::Phase>(label.phase);
        spec.scale = static_cast<double>(scaled.transformRatio);
        channels.push_back(std::move(spec));
    }
    return channels;
}

} // namespace TavNA
